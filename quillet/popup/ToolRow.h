// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QPointer>
#include <QScrollArea>

class PillButton;
class EdgeFade;

/// The popup's row of tools. It shows no scroller: any wheel scrolls it sideways, and so does a
/// drag, which never clicks. An edge that hides more tools fades out. Main thread.
class ToolRow : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes the buttons over and lays them out from the left.
    explicit ToolRow(const QList<PillButton *> &buttons, QWidget *parent);

    /// Keeps `button` in view, with a part of its neighbours; also when the row is shown later.
    void reveal(PillButton *button);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void scrollTo(int value);
    void updateFades();

    QPointer<PillButton> m_revealed;
    EdgeFade *m_leftFade;
    EdgeFade *m_rightFade;
    /// Pointer and scroll position at the press, in points.
    int m_pressX = 0;
    int m_pressValue = 0;
    bool m_isDragging = false;
};
