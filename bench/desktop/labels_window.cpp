// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// A large tree in a toolkit whose accessibility has no bulk calls: labels in a pane that has the
// focus.

#include <QApplication>
#include <QGridLayout>
#include <QLabel>

int main(int argc, char **argv)
{
    constexpr int labelCount = 2000;
    constexpr int columnCount = 40;

    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Labels window"));
    window.setFocusPolicy(Qt::StrongFocus);
    auto *grid = new QGridLayout(&window);
    grid->setSpacing(0);
    for (int i = 0; i < labelCount; ++i)
        grid->addWidget(new QLabel(QString::number(i)), i / columnCount, i % columnCount);
    window.show();
    window.setFocus();
    return application.exec();
}
