// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/settings/ModelSection.h"

#include "quillet/widgets/Localisation.h"

#include <QCheckBox>
#include <QFile>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

ModelSection::ModelSection(Collaborators collaborators, QWidget *parent)
    : QWidget(parent)
    , m_collaborators(std::move(collaborators))
    , m_foundServer(new QCheckBox)
    , m_address(makeField("url"))
    , m_name(makeField("name"))
    , m_key(makeField("key"))
    , m_try(new QPushButton(localized("Try It")))
    , m_trial(new QLabel)
{
    m_foundServer->hide();
    connect(m_foundServer, &QCheckBox::clicked, this,
            [this](bool agreed) { m_collaborators.agreeToServer(agreed); });
    m_address->setPlaceholderText(QStringLiteral("http://127.0.0.1:8080"));
    m_key->setEchoMode(QLineEdit::Password);
    connect(m_try, &QPushButton::clicked, this, &ModelSection::tryIt);
    m_trial->setWordWrap(true);
    // What a model writes is shown as it stands.
    m_trial->setTextFormat(Qt::PlainText);
    m_trial->hide();

    auto *form = new QFormLayout;
    form->addRow(localized("Address"), m_address);
    form->addRow(localized("Model"), m_name);
    form->addRow(localized("Key"), m_key);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_foundServer);
    layout->addLayout(form);
    layout->addWidget(m_try, 0, Qt::AlignLeading);
    layout->addWidget(m_trial);
    lookForServer();
}

QLineEdit *ModelSection::makeField(const char *key)
{
    const QSettings file(m_collaborators.file, QSettings::IniFormat);
    auto *edit =
        new QLineEdit(file.value(QStringLiteral("model/") + QString::fromLatin1(key)).toString());
    connect(edit, &QLineEdit::editingFinished, this, &ModelSection::save);
    return edit;
}

void ModelSection::lookForServer()
{
    m_collaborators.findServer(this, [this](const QString &name, bool agreed) {
        m_foundServer->setText(localized("Use %1, found on this computer").arg(name));
        m_foundServer->setChecked(agreed);
        m_foundServer->show();
    });
}

void ModelSection::save()
{
    QSettings file(m_collaborators.file, QSettings::IniFormat);
    for (const auto &[key, edit] :
         {std::pair("url", m_address), std::pair("name", m_name), std::pair("key", m_key)}) {
        const QString name = QStringLiteral("model/") + QString::fromLatin1(key);
        const QString value = edit->text().trimmed();
        if (value.isEmpty())
            file.remove(name);
        else if (file.value(name).toString() != value)
            file.setValue(name, value);
    }
    file.sync();
    // It holds a key.
    QFile::setPermissions(m_collaborators.file, QFile::ReadOwner | QFile::WriteOwner);
}

void ModelSection::tryIt()
{
    save();
    m_try->setEnabled(false);
    m_trial->setText(localized("Writing…"));
    m_trial->show();
    m_collaborators.tryIt(this, [this](const QString &outcome) {
        m_trial->setText(outcome);
        m_try->setEnabled(true);
    });
}
