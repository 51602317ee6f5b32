// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// A program with a floating panel, for the desktop tests. It reads commands from standard input,
// one a line, and answers each with one line on standard output.
#include "platform/linux/x11/X11WindowSystem.h"

#include <QApplication>
#include <QPainter>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTextEdit>
#include <QVBoxLayout>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace
{

class RoundPanel : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(108, 61, 245));
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect(), 20, 20);
    }
};

class Probe
{
public:
    std::string answer(const std::string &line)
    {
        std::istringstream in(line);
        std::string command;
        in >> command;
        if (command == "panel")
            return panel(in);
        if (command == "window")
            return window();
        if (command == "hide")
            m_panel->hide();
        else if (command == "close")
            m_panel->close();
        else if (command == "show")
            m_panel->show();
        else if (command == "move") {
            int x = 0;
            int y = 0;
            in >> x >> y;
            m_panel->move(x, y);
        } else if (command == "focus") {
            m_workspace.focusPanel(m_panel.get());
            m_text->setFocus();
        } else if (command == "restore") {
            m_workspace.restoreFocus(
                [](bool returned) { std::cout << "restored " << returned << std::endl; });
            return {};
        } else if (command == "text")
            return m_text->toPlainText().toStdString();
        else if (command == "clicks")
            return std::to_string(m_clicks);
        else if (command == "front") {
            const auto pid = m_workspace.frontmostApplication();
            return pid ? std::to_string(*pid) : "none";
        } else if (command == "name") {
            int pid = 0;
            in >> pid;
            const auto application = m_workspace.runningApplication(pid);
            return application ? application->localizedName.value_or(QString()).toStdString()
                               : "none";
        } else if (command == "activate") {
            m_workspace.activate(m_window.get());
        } else if (command == "regular" || command == "accessory") {
            m_workspace.setActivationPolicy(
                m_window.get(), command == "regular" ? platform::ActivationPolicy::Regular
                                                     : platform::ActivationPolicy::Accessory);
        } else {
            return "unknown command";
        }
        return "ok";
    }

private:
    std::string panel(std::istringstream &in)
    {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        in >> x >> y >> width >> height;
        m_panel = std::make_unique<RoundPanel>();
        auto *layout = new QVBoxLayout(m_panel.get());
        auto *button = new QPushButton(QStringLiteral("Click"));
        button->setFocusPolicy(Qt::NoFocus);
        QObject::connect(button, &QPushButton::clicked, [this] { ++m_clicks; });
        m_text = new QTextEdit;
        layout->addWidget(button);
        layout->addWidget(m_text);
        m_workspace.preparePanel(m_panel.get(), true);
        m_panel->setGeometry(x, y, width, height);
        m_panel->show();
        return std::to_string(m_panel->winId());
    }

    std::string window()
    {
        m_window = std::make_unique<QWidget>();
        m_window->setWindowTitle(QStringLiteral("Probe window"));
        m_window->resize(300, 200);
        return std::to_string(m_window->winId());
    }

    platform::linux_::X11WindowSystem m_windowSystem;
    platform::Workspace &m_workspace = m_windowSystem.workspace();
    std::unique_ptr<QWidget> m_panel;
    std::unique_ptr<QWidget> m_window;
    QTextEdit *m_text = nullptr;
    int m_clicks = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Probe probe;
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&probe] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QApplication::quit();
            return;
        }
        if (const std::string answer = probe.answer(line); !answer.empty())
            std::cout << answer << std::endl;
    });
    return QApplication::exec();
}
