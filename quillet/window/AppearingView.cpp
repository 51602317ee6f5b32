// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/AppearingView.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/VisualStyle.h"
#include "quillet/widgets/WindowMetrics.h"

#include <QShowEvent>

AppearingView::AppearingView(QWidget *parent)
    : QWidget(parent)
{
    setPalette(lightPalette());
    setAutoFillBackground(true);
    setFont(systemFont(kBodyPointSize));
    setFixedSize(mainWindowSize());
}

void AppearingView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_inSight || event->spontaneous())
        return;
    m_inSight = true;
    onAppear();
}

void AppearingView::hideEvent(QHideEvent *event)
{
    if (isHidden() && !event->spontaneous())
        m_inSight = false;
    QWidget::hideEvent(event);
}
