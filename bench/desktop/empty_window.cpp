// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The least that a Qt Widgets program can be: what Quillet's footprint and start are held against.

#include <QApplication>
#include <QWidget>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty window"));
    window.resize(600, 600);
    window.show();
    return application.exec();
}
