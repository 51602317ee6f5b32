#include "quillet/window/TutorialEditor.h"

#include "quillet/window/Fonts.h"
#include "quillet/window/VisualStyle.h"

#include <QScrollBar>
#include <QStyle>
#include <QStyleFactory>

TutorialEditor::TutorialEditor(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("tutorialEditor"));
    setAccessibleName(QStringLiteral("Text to try Quillet on"));
    setFont(systemFont(kBodyPointSize));
    QPalette colors = lightPalette();
    colors.setColor(QPalette::WindowText, withOpacity(SystemColor::gray, 0.3));
    setPalette(colors);
    // A dark theme's style may paint in its own colours, whatever the palette says.
    if (QStyle *fusion = QStyleFactory::create(QStringLiteral("Fusion"))) {
        fusion->setParent(this);
        setStyle(fusion);
        verticalScrollBar()->setStyle(fusion);
    }
    // A plain box is drawn in the colour of window text.
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(1);
    document()->setDocumentMargin(6);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(100);
}
