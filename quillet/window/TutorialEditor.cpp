// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/window/TutorialEditor.h"

#include "quillet/widgets/Fonts.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/widgets/VisualStyle.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleFactory>

#include <cmath>

TutorialEditor::TutorialEditor(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("tutorialEditor"));
    setAccessibleName(localized("Text to try Quillet on"));
    setFont(systemFont(kBodyPointSize));
    setPalette(lightPalette());
    // A dark theme's style may paint in its own colours, whatever the palette says.
    if (QStyle *fusion = QStyleFactory::create(QStringLiteral("Fusion"))) {
        fusion->setParent(this);
        setStyle(fusion);
        verticalScrollBar()->setStyle(fusion);
    }
    setFrameStyle(QFrame::NoFrame);
    setViewportMargins(1, 1, 1, 1);
    document()->setDocumentMargin(6);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(100);
}

bool TutorialEditor::event(QEvent *event)
{
    const bool handled = QPlainTextEdit::event(event);
    if (event->type() == QEvent::Paint)
        paintBorder();
    return handled;
}

void TutorialEditor::paintBorder()
{
    // As many whole pixels on each side: a frame of one point has one or two at a scale of 1.5.
    const qreal line = std::floor(devicePixelRatioF()) / devicePixelRatioF();
    const QRectF box = rect();
    const QColor color = withOpacity(SystemColor::gray, 0.3);
    QPainter painter(this);
    painter.fillRect(QRectF(0, 0, box.width(), line), color);
    painter.fillRect(QRectF(0, box.height() - line, box.width(), line), color);
    painter.fillRect(QRectF(0, line, line, box.height() - 2 * line), color);
    painter.fillRect(QRectF(box.width() - line, line, line, box.height() - 2 * line), color);
}
