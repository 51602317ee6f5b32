// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/wayland/layers/LayerSurface.h"

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QPointer>

#include <map>
#include <memory>
#include <optional>

class QWidget;

namespace platform::linux_
{

/// The small windows that float above everything else, as surfaces of the compositor's topmost
/// layer. The widget's own position says where; nothing but setTakesKeyboard() gives one the
/// keyboard. Where there are no layers, panels are only what the toolkit makes of their flags. Main
/// thread only.
class LayerPanels : public QObject
{
    Q_OBJECT
public:
    LayerPanels();
    ~LayerPanels() override;

    /// Whether panels can be placed at all.
    bool isAvailable() const { return m_shell != nullptr; }

    /// Before `panel` is first shown. It must not have a graphics effect of its own.
    void prepare(QWidget *panel, bool canTakeKeyboard);

    bool canTakeKeyboard(const QWidget *panel) const;
    void setTakesKeyboard(QWidget *panel, bool takes);

    /// Where on the desktop the pointer is, while a button is pressed in a panel.
    std::optional<QPointF> pressedPointer() const;

Q_SIGNALS:
    /// The panel is about to leave the screen.
    void leaving(QWidget *panel);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(QWidget *panel, bool canTakeKeyboard);
    void appear(QWidget *panel);
    void disappear(QWidget *panel);
    void follow(QWidget *panel);
    void release();
    QWidget *panelOf(const QObject *window) const;

    std::unique_ptr<LayerShell> m_shell;
    /// Panel → may take the keyboard.
    QHash<QWidget *, bool> m_panels;
    std::map<QWidget *, std::unique_ptr<LayerSurface>> m_surfaces;
    QPointer<QWidget> m_pressed;
    /// From the corner of the pressed panel's surface.
    QPointF m_pointer;
    std::unique_ptr<QWidget> m_standIn;
};

} // namespace platform::linux_
