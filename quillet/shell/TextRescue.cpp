// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/TextRescue.h"

#include "quillet/widgets/Localisation.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace
{

/// A larger content of the clipboard is not copied into this process to be brought back.
constexpr qsizetype maxFormerSize = 16 * 1024 * 1024;

/// A copy of what is on the clipboard; null when that is nothing, or too large to be kept.
std::shared_ptr<QMimeData> copyOf(const QMimeData *content)
{
    auto copy = std::make_shared<QMimeData>();
    qsizetype size = 0;
    if (!content)
        return {};
    for (const QString &format : content->formats()) {
        const QByteArray data = content->data(format);
        size += data.size();
        if (size > maxFormerSize)
            return {};
        copy->setData(format, data);
    }
    return copy->formats().isEmpty() ? nullptr : copy;
}

void bringBack(const QMimeData &former)
{
    auto *content = new QMimeData;
    for (const QString &format : former.formats())
        content->setData(format, former.data(format));
    QGuiApplication::clipboard()->setMimeData(content);
}

/// What else the user has to know; empty in most cases.
QString warning(const platform::WriteOutcome &outcome)
{
    QString sentences;
    if (outcome.keysMayBeElsewhere)
        sentences += u' ' + localized("The keyboard went to another input meanwhile: some of the "
                                      "text may have gone there.");
    if (outcome.isDamaged)
        sentences += u' ' + localized("Look at your text: a part of it may have changed.");
    return sentences;
}

} // namespace

void TextRescue::keep(const QString &text, const platform::WriteOutcome &outcome)
{
    if (text.isEmpty()) {
        m_notice.mention(localized("Quillet could not write into the other application.") +
                         warning(outcome));
        return;
    }
    QClipboard *clipboard = QGuiApplication::clipboard();
    const std::shared_ptr<QMimeData> former = copyOf(clipboard->mimeData());
    auto *content = new QMimeData;
    content->setText(text);
    // Clipboard managers keep what carries this out of their histories.
    content->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    clipboard->setMimeData(content);

    Notice::Action action;
    if (former)
        action = {localized("Bring Back the Former Clipboard"), [former] { bringBack(*former); }};
    m_notice.mention(localized("Quillet could not write the text into the other application. "
                               "It is on the clipboard, so you can paste it.") +
                         warning(outcome),
                     action);
}
