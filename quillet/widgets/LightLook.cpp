// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/LightLook.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/VisualStyle.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

namespace
{

constexpr int textSize = 14;

/// A style sheet keeps the palette of a window from its children, so it names their colours too.
/// A line of two points in place of one takes its room from the padding: nothing moves with the
/// focus.
constexpr const char *styleSheet = R"(
QMessageBox, QScrollArea, #page { background: white; }
QLabel { color: black; background: transparent; }
QCheckBox { color: black; spacing: 8px; }
QCheckBox::indicator { width: 16px; height: 16px; background: white; border: 1px solid #86868c;
    border-radius: 5px; margin: 1px; }
QCheckBox::indicator:checked { background: #6c3df5; border-color: #6c3df5;
    image: url(:/images/Check.svg); }
QCheckBox::indicator:focus { border: 2px solid #6c3df5; margin: 0px; }
QCheckBox::indicator:checked:focus { border-color: #2a0f7a; }
QPushButton { background: #ededf0; color: black; border: 1px solid #86868c; border-radius: 15px;
    padding: 5px 16px; min-height: 18px; }
QPushButton:hover { background: #e2e2e6; }
QPushButton:pressed { background: #d2d2d8; }
QPushButton:focus { border: 2px solid #6c3df5; padding: 4px 15px; }
QPushButton:disabled { color: #6e6e73; border-color: #c8c8cc; }
QPushButton:default { background: #6c3df5; color: white; border-color: #6c3df5; }
QPushButton:default:hover { background: #5f33e0; }
QPushButton:default:pressed { background: #5029c4; }
QPushButton:default:focus { border: 2px solid #2a0f7a; }
QLineEdit, QPlainTextEdit, QListWidget, QComboBox { background: white; color: black;
    border: 1px solid #86868c; border-radius: 6px; padding: 4px 6px; }
QLineEdit:focus, QPlainTextEdit:focus, QListWidget:focus, QComboBox:focus {
    border: 2px solid #6c3df5; padding: 3px 5px; }
)";

} // namespace

void giveLightLook(QWidget *window)
{
    window->setPalette(lightPalette());
    window->setAutoFillBackground(true);
    // A dark theme's style may paint in its own colours, whatever the palette says.
    if (QStyle *fusion = QStyleFactory::create(QStringLiteral("Fusion"))) {
        fusion->setParent(window);
        window->setStyle(fusion);
    }
    const QFont font = customFont(QStringLiteral("Manrope-Regular"), textSize);
    window->setFont(font);
    // A desktop may have fonts of its own for kinds of controls.
    window->setStyleSheet(QStringLiteral("QPushButton { font-family: \"%1\"; font-size: %2px; }")
                              .arg(font.family())
                              .arg(textSize) +
                          QString::fromLatin1(styleSheet));
}

void giveLightLook(QMessageBox *message)
{
    constexpr QSize icon(48, 48);
    giveLightLook(static_cast<QWidget *>(message));
    message->setIconPixmap(QApplication::windowIcon().pixmap(icon, message->devicePixelRatioF()));
    for (QLabel *label : message->findChildren<QLabel *>()) {
        if (!label->pixmap().isNull())
            label->setAccessibleName(localized("Icon of Quillet"));
    }
}
