// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/UserSettings.h"

#include <QSettings>

namespace
{

const QString &shortcutKey()
{
    static const QString key = QStringLiteral("shortcut");
    return key;
}

const QString &excludedKey()
{
    static const QString key = QStringLiteral("excludedPrograms");
    return key;
}

const QString &offeredKey()
{
    static const QString key = QStringLiteral("loginStartOffered");
    return key;
}

} // namespace

UserSettings::UserSettings(QSettings &store, QObject *parent)
    : QObject(parent)
    , m_store(store)
{
}

QKeySequence UserSettings::shortcut() const
{
    return QKeySequence(m_store.value(shortcutKey(), QStringLiteral("Meta+Shift+Q")).toString(),
                        QKeySequence::PortableText);
}

void UserSettings::setShortcut(const QKeySequence &shortcut)
{
    if (shortcut == this->shortcut())
        return;
    m_store.setValue(shortcutKey(), shortcut.toString(QKeySequence::PortableText));
    Q_EMIT shortcutChanged();
}

QStringList UserSettings::excludedPrograms() const
{
    return m_store.value(excludedKey()).toStringList();
}

bool UserSettings::isExcluded(const QString &program) const
{
    return excludedPrograms().contains(program);
}

void UserSettings::setExcluded(const QString &program, bool excluded)
{
    QStringList programs = excludedPrograms();
    if (program.isEmpty() || programs.contains(program) == excluded)
        return;
    if (excluded)
        programs.append(program);
    else
        programs.removeAll(program);
    m_store.setValue(excludedKey(), programs);
    Q_EMIT excludedProgramsChanged();
}

bool UserSettings::wasLoginStartOffered() const
{
    return m_store.value(offeredKey(), false).toBool();
}

void UserSettings::setLoginStartOffered()
{
    m_store.setValue(offeredKey(), true);
}
