// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/MenuBarItem.h"

#include "quillet/widgets/Localisation.h"

#include <QCursor>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <chrono>

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds trayCheckInterval = 3s;

} // namespace

MenuBarItem::MenuBarItem(const Actions &actions)
{
    const auto add = [this](const QString &title, const std::function<void()> &action) {
        connect(m_menu.addAction(title), &QAction::triggered, this, [action] { action(); });
    };
    add(localized("Open Quillet"), actions.openQuillet);
    add(localized("Send Feedback"), actions.sendFeedback);
    add(localized("Check for Updates"), actions.checkForUpdates);
    add(localized("Quit"), actions.quit);

    // An item made while there is no tray does not find every kind of tray that comes later.
    m_waitForTray.setInterval(trayCheckInterval);
    connect(&m_waitForTray, &QTimer::timeout, this, [this] {
        if (QSystemTrayIcon::isSystemTrayAvailable()) {
            m_waitForTray.stop();
            show();
        }
    });
    // The window is not to wait for the icon and for the desktop's answers.
    QTimer::singleShot(0, this, [this] {
        m_icon = labelIcon();
        if (!QSystemTrayIcon::isSystemTrayAvailable())
            m_waitForTray.start();
        show();
    });
}

MenuBarItem::~MenuBarItem() = default;

void MenuBarItem::show()
{
    m_item = std::make_unique<QSystemTrayIcon>(m_icon);
    m_item->setToolTip(QStringLiteral("Quillet"));
    m_item->setContextMenu(&m_menu);
    connect(m_item.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    m_menu.popup(QCursor::pos());
            });
    m_item->show();
}

QIcon MenuBarItem::labelIcon()
{
    const QString name = QStringLiteral(":/images/QuilletIcon.svg");
    QSvgRenderer image(name);
    if (!image.isValid())
        qFatal("The image \"QuilletIcon\" is missing");
    QIcon icon;
    for (const int label : {16, 22, 24, 32, 44, 48, 64}) {
        // Six points of the usual label, which is 24 high; in proportion for the others.
        const qreal inset = label * 3 / 24.0;
        QPixmap pixmap(label, label);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        image.render(&painter, QRectF(pixmap.rect()).adjusted(inset, inset, -inset, -inset));
        painter.end();
        icon.addPixmap(pixmap);
    }
    icon.setIsMask(true);
    return icon;
}
