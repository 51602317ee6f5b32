// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/WindowHelpers.h"

#include "quillet/diagnostics/DiagnosticLog.h"

#include <QEvent>
#include <QTimer>

#include <utility>

namespace
{

/// The view takes no room and no input; it is only there to belong to a window.
void makeBackground(QWidget *view)
{
    view->setAttribute(Qt::WA_TransparentForMouseEvents);
    view->setFocusPolicy(Qt::NoFocus);
    view->resize(0, 0);
    view->lower();
}

void withWindowLater(QWidget *view, std::function<void(QWidget *)> step)
{
    QTimer::singleShot(0, view, [view, step = std::move(step)] {
        if (QWidget *window = view->window(); window != view)
            step(window);
    });
}

} // namespace

WindowAccessor::WindowAccessor(std::function<void(QWidget *)> callback, QWidget *parent)
    : QWidget(parent)
{
    makeBackground(this);
    withWindowLater(this, std::move(callback));
}

WindowSizeSetter::WindowSizeSetter(double width, double height, QWidget *parent)
    : QWidget(parent)
{
    makeBackground(this);
    const QSize size = QSizeF(width, height).toSize();
    withWindowLater(this, [size](QWidget *window) { window->setFixedSize(size); });
}

void WindowDelegate::windowWillClose(QWidget *window)
{
    printLine(QStringLiteral("Window will close!"));
    m_workspace.setActivationPolicy(window, platform::ActivationPolicy::Accessory);
    Q_EMIT windowClosed();
}

bool WindowDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close && watched->isWidgetType())
        windowWillClose(static_cast<QWidget *>(watched));
    return QObject::eventFilter(watched, event);
}
