// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <cstdint>

/// Names and numbers of the AT-SPI 2 protocol: the interface descriptions (xml/) and the
/// enumerations of atspi-constants.h in the at-spi2-core documentation.
namespace platform::linux_::atspi
{

inline constexpr char registryName[] = "org.a11y.atspi.Registry";
inline constexpr char registryPath[] = "/org/a11y/atspi/registry";
inline constexpr char rootPath[] = "/org/a11y/atspi/accessible/root";

inline constexpr char registryInterface[] = "org.a11y.atspi.Registry";
inline constexpr char accessibleInterface[] = "org.a11y.atspi.Accessible";
inline constexpr char applicationInterface[] = "org.a11y.atspi.Application";
inline constexpr char collectionInterface[] = "org.a11y.atspi.Collection";
inline constexpr char componentInterface[] = "org.a11y.atspi.Component";
inline constexpr char editableTextInterface[] = "org.a11y.atspi.EditableText";
inline constexpr char textInterface[] = "org.a11y.atspi.Text";
inline constexpr char valueInterface[] = "org.a11y.atspi.Value";
inline constexpr char propertiesInterface[] = "org.freedesktop.DBus.Properties";

enum class Role : std::uint32_t {
    Alert = 2,
    CheckBox = 7,
    CheckMenuItem = 8,
    ColorChooser = 9,
    ColumnHeader = 10,
    ComboBox = 11,
    Dialog = 16,
    FileChooser = 19,
    Filler = 20,
    Frame = 23,
    GlassPane = 24,
    HtmlContainer = 25,
    Icon = 26,
    Image = 27,
    InternalFrame = 28,
    Label = 29,
    LayeredPane = 30,
    List = 31,
    ListItem = 32,
    Menu = 33,
    MenuBar = 34,
    MenuItem = 35,
    OptionPane = 36,
    PageTab = 37,
    PageTabList = 38,
    Panel = 39,
    PasswordText = 40,
    PopupMenu = 41,
    ProgressBar = 42,
    PushButton = 43,
    RadioButton = 44,
    RadioMenuItem = 45,
    RootPane = 46,
    RowHeader = 47,
    ScrollBar = 48,
    ScrollPane = 49,
    Separator = 50,
    Slider = 51,
    SpinButton = 52,
    SplitPane = 53,
    StatusBar = 54,
    Table = 55,
    TableCell = 56,
    TableColumnHeader = 57,
    TableRowHeader = 58,
    Terminal = 60,
    Text = 61,
    ToggleButton = 62,
    ToolBar = 63,
    ToolTip = 64,
    Tree = 65,
    TreeTable = 66,
    Viewport = 68,
    Window = 69,
    Paragraph = 73,
    Application = 75,
    Entry = 79,
    DocumentFrame = 82,
    Heading = 83,
    Page = 84,
    Section = 85,
    Link = 88,
    TableRow = 90,
    TreeItem = 91,
    DocumentSpreadsheet = 92,
    DocumentPresentation = 93,
    DocumentText = 94,
    DocumentWeb = 95,
    DocumentEmail = 96,
    Comment = 97,
    ListBox = 98,
    Grouping = 99,
    InfoBar = 102,
    LevelBar = 103,
    BlockQuote = 105,
    Article = 109,
    Static = 116,
    PushButtonMenu = 129,
};

/// Bits of the state set.
enum class State : std::uint8_t {
    Active = 1,
    Defunct = 6,
    Editable = 7,
    Focusable = 11,
    Focused = 12,
    MultiLine = 17,
    Showing = 25,
    SingleLine = 26,
    Visible = 30,
    ReadOnly = 43,
};

using States = std::uint64_t;

constexpr States bit(State state)
{
    return States(1) << std::uint8_t(state);
}

constexpr bool has(States states, State state)
{
    return (states & bit(state)) != 0;
}

enum class CoordType : std::uint32_t { Screen = 0, Window = 1 };

} // namespace platform::linux_::atspi
