// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/SidePanel.h"

#include "platform/Workspace.h"
#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/PillButton.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr auto timeOnScreen = 4s;
/// Points.
constexpr int gap = 6;
constexpr int padding = 8;
constexpr int actionHeight = 32;
constexpr qreal cornerRadius = 8;
constexpr QColor background(0x2B, 0x2B, 0x33);
constexpr QColor outline(0xFF, 0xFF, 0xFF, 0x40);

} // namespace

SidePanel::SidePanel(platform::Workspace &workspace)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Quillet"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(padding / 2);
    workspace.preparePanel(this, false);
}

SidePanel *SidePanel::say(platform::Workspace &workspace, const QString &sentence,
                          const QRect &button)
{
    auto *panel = new SidePanel(workspace);
    auto *label = new QLabel(sentence);
    label->setFont(systemFont(kBodyPointSize));
    label->setStyleSheet(QStringLiteral("color: white"));
    panel->layout()->addWidget(label);
    panel->setAccessibleName(sentence);
    panel->placeAt(button);
    QAccessibleEvent announcement(panel, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
    QTimer::singleShot(timeOnScreen, panel, &QWidget::close);
    return panel;
}

SidePanel *SidePanel::offer(platform::Workspace &workspace, const QList<Action> &actions,
                            const QRect &button)
{
    auto *panel = new SidePanel(workspace);
    for (const Action &action : actions) {
        auto *choice = new PillButton(action.title);
        choice->setAccessibleName(action.title);
        choice->setFixedHeight(actionHeight);
        choice->setMinimumWidth(static_cast<int>(choice->titleWidth()) + 4 * padding);
        choice->setFocusPolicy(Qt::NoFocus);
        panel->layout()->addWidget(choice);
        QObject::connect(choice, &PillButton::clicked, panel, [panel, run = action.run] {
            panel->close();
            run();
        });
    }
    panel->placeAt(button);
    workspace.watchDismissal(panel, [panel = QPointer(panel)] {
        if (panel)
            panel->close();
    });
    return panel;
}

void SidePanel::placeAt(const QRect &button)
{
    adjustSize();
    const QScreen *screen = QGuiApplication::screenAt(button.center());
    const QRect room = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    QPoint place(button.right() + 1 - width(), button.bottom() + 1 + gap);
    if (place.y() + height() > room.bottom())
        place.setY(button.top() - gap - height());
    place.setX(
        std::clamp(place.x(), room.left(), std::max(room.left(), room.right() + 1 - width())));
    move(place);
    show();
    raise();
}

void SidePanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(outline, 1));
    painter.setBrush(background);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
}
