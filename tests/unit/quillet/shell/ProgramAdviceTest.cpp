// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/ProgramAdvice.h"

#include "tests/support/FakePlatform.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

struct FakeAccess : platform::ProgramAccess {
    std::optional<Program> program =
        Program{QStringLiteral("writer.desktop"), QStringLiteral("Writer"), false};
    QString failure;
    QStringList turned;
    std::function<void(bool)> quit;

    std::optional<Program> programOf(std::int32_t) override { return program; }
    bool embedsWebEngine(std::int32_t) override { return false; }
    QList<Program> turnedOn() override { return {}; }
    QString turnOn(const QString &entry, std::int32_t) override
    {
        turned.append(entry);
        return failure;
    }
    QString turnOff(const QString &) override { return {}; }
    void startAfterQuit(const QString &, std::int32_t, std::function<void(bool)> done) override
    {
        quit = std::move(done);
    }
};

class ProgramAdviceTest : public testing::Test
{
protected:
    fake::Workspace m_workspace;
    Notice m_notice{m_workspace};
    QTemporaryDir m_folder;
    QSettings m_store{m_folder.filePath(QStringLiteral("store.ini")), QSettings::IniFormat};
    FakeAccess m_access;
    ProgramAdvice m_advice{&m_access, m_notice, m_store};

    static QMessageBox *box()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *shown = qobject_cast<QMessageBox *>(widget);
            if (shown && shown->isVisible())
                return shown;
        }
        return nullptr;
    }

    static QString sentence() { return box() ? box()->text() : QString(); }

    static void press(const QString &title)
    {
        ASSERT_NE(box(), nullptr);
        for (QAbstractButton *button : box()->buttons()) {
            if (button->text() == title)
                return button->click();
        }
        FAIL() << "no button " << title.toStdString();
    }

    static void close()
    {
        if (box())
            box()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

} // namespace

TEST_F(ProgramAdviceTest, OffersTheSwitchOnceForEachProgram)
{
    m_advice.mention(7, QStringLiteral("advice"));
    EXPECT_TRUE(sentence().contains(QStringLiteral("Writer")));
    close();

    ProgramAdvice nextRun(&m_access, m_notice, m_store);
    nextRun.mention(8, QStringLiteral("advice"));
    EXPECT_EQ(box(), nullptr);
    m_access.program->entry = QStringLiteral("other.desktop");
    nextRun.mention(9, QStringLiteral("advice"));
    EXPECT_NE(box(), nullptr);
    EXPECT_TRUE(m_access.turned.isEmpty()) << "nothing is changed unasked";
}

TEST_F(ProgramAdviceTest, TurnsTheSwitchOnAndOffersToStartAgain)
{
    m_advice.mention(7, QStringLiteral("advice"));
    press(QStringLiteral("Turn on for Writer"));
    EXPECT_EQ(m_access.turned, QStringList(QStringLiteral("writer.desktop")));
    press(QStringLiteral("Start again when I quit it"));
    ASSERT_TRUE(m_access.quit);
    close();
    m_access.quit(true);
    EXPECT_EQ(box(), nullptr);
    m_access.quit(false);
    EXPECT_TRUE(sentence().contains(QStringLiteral("not started again")));
}

TEST_F(ProgramAdviceTest, SaysWhatDidNotWork)
{
    m_access.failure = QStringLiteral("The disk is full.");
    m_advice.mention(7, QStringLiteral("advice"));
    press(QStringLiteral("Turn on for Writer"));
    EXPECT_EQ(sentence(), m_access.failure);
    close();

    m_access.program->isOn = true;
    m_advice.mention(7, QStringLiteral("advice"));
    EXPECT_TRUE(sentence().contains(QStringLiteral("still shows")));
    close();
    m_advice.mention(7, QStringLiteral("advice"));
    EXPECT_EQ(box(), nullptr);

    m_access.program.reset();
    m_advice.mention(7, QStringLiteral("Start it with an option."));
    EXPECT_EQ(sentence(), QStringLiteral("Start it with an option."));
}
