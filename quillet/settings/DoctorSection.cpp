// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/DoctorSection.h"

#include "quillet/widgets/Localisation.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

/// Points.
constexpr int reportHeight = 200;

} // namespace

DoctorSection::DoctorSection(Examine examine, QWidget *parent)
    : QWidget(parent)
    , m_examine(std::move(examine))
    , m_report(new QPlainTextEdit)
    , m_copy(new QPushButton(localized("Copy for a Bug Report")))
{
    m_report->setReadOnly(true);
    m_report->setTabChangesFocus(true);
    m_report->setFixedHeight(reportHeight);
    m_report->setAccessibleName(localized("Does Quillet work here?"));
    m_copy->setEnabled(false);
    connect(m_copy, &QPushButton::clicked, this, &DoctorSection::copy);
    auto *again = new QPushButton(localized("Examine"));
    again->setAccessibleDescription(localized("Looks at this desktop and its programs"));
    connect(again, &QPushButton::clicked, this, &DoctorSection::examine);

    setFocusProxy(again);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(again);
    buttons->addWidget(m_copy);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(buttons);
    layout->addWidget(m_report);
    m_report->hide();
}

void DoctorSection::examine()
{
    m_report->show();
    m_report->setPlainText(localized("Looking…"));
    m_copy->setEnabled(false);
    m_examine(this, [this](const QString &report) { showReport(report); });
}

void DoctorSection::showReport(const QString &report)
{
    m_report->setPlainText(report);
    m_copy->setEnabled(true);
}

void DoctorSection::copy()
{
    QGuiApplication::clipboard()->setText(m_report->toPlainText());
}
