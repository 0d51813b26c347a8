pragma Singleton

import QtQuick
import Tamsel

// Every colour, type size and measure of the window. Lengths are device-independent pixels.
QtObject {
    // Qt 6.4 has no colour-scheme property; the palette follows the desktop and tells of changes.
    readonly property SystemPalette systemPalette: SystemPalette {}
    readonly property bool dark: systemPalette.window.hslLightness < 0.5

    // Set by the main window while it is narrower than compactBelow.
    property bool compact: false
    readonly property int compactBelow: 900

    readonly property color windowBg: dark ? "#16181B" : "#F5F3EF"
    readonly property color sidebarBg: dark ? "#101214" : "#EAE7E0"
    readonly property color surface: dark ? "#202327" : "#FFFFFF"
    readonly property color surfaceAlt: dark ? "#1B1E21" : "#FAF8F5"
    readonly property color hover: dark ? "#2A2E33" : "#F1EEE8"
    readonly property color pressed: dark ? "#34393F" : "#E6E2DA"
    readonly property color field: dark ? "#16181B" : "#FFFFFF"
    readonly property color border: dark ? "#33383E" : "#DEDAD2"
    readonly property color borderStrong: dark ? "#7C848E" : "#87827A"
    readonly property color text: dark ? "#ECEDEF" : "#1E2124"
    readonly property color textMuted: dark ? "#A8AEB6" : "#5A5C60"
    readonly property color textDisabled: dark ? "#6A7078" : "#9A9894"
    readonly property color accent: dark ? "#5FC6D8" : "#0B6475"
    readonly property color accentFill: dark ? "#147A8D" : "#0B6475"
    readonly property color accentHover: dark ? "#116B7C" : "#095361"
    readonly property color accentPressed: dark ? "#0E5866" : "#07424D"
    readonly property color textOnAccent: dark ? "#FFFFFF" : "#FFFFFF"
    readonly property color accentSoft: dark ? "#12363D" : "#D9ECEF"
    readonly property color focus: dark ? "#7FD8E8" : "#0B6475"
    readonly property color red: dark ? "#FF8F85" : "#B3261E"
    readonly property color redSoft: dark ? "#3B1E1C" : "#FBE9E7"
    readonly property color redFill: dark ? "#B93A31" : "#B3261E"
    readonly property color orange: dark ? "#FFB169" : "#A84300"
    readonly property color orangeSoft: dark ? "#382613" : "#FDEFDF"
    readonly property color yellow: dark ? "#F2D05C" : "#6E5300"
    readonly property color yellowSoft: dark ? "#332B10" : "#FFF3C2"
    readonly property color green: dark ? "#72D294" : "#19703A"
    readonly property color greenSoft: dark ? "#16301F" : "#E1F3E7"
    readonly property color blue: dark ? "#8DBBFF" : "#1B5BB8"
    readonly property color blueSoft: dark ? "#1A2A42" : "#E5EEFB"
    readonly property color purple: dark ? "#CBA6F7" : "#7438AE"
    readonly property color graySoft: dark ? "#2B2F34" : "#EEEBE5"
    readonly property color capFace: dark ? "#363B42" : "#FCFBF9"
    readonly property color capModFace: dark ? "#2B2F35" : "#EDEAE3"
    readonly property color capEdge: dark ? "#0B0C0D" : "#BDB7AB"
    readonly property color capBorder: dark ? "#4C525A" : "#CFCAC0"
    readonly property color capText: dark ? "#F1F2F4" : "#1E2124"
    readonly property color tooltipBg: dark ? "#ECEDEF" : "#2A2D31"
    readonly property color tooltipText: dark ? "#1E2124" : "#FFFFFF"
    // Outlines that only decorate.
    readonly property color borderFaint: Qt.alpha(borderStrong, 0.55)
    readonly property color scrim: dark ? Qt.rgba(0, 0, 0, 0.6)
                                        : Qt.rgba(20 / 255, 22 / 255, 24 / 255, 0.45)
    readonly property color none: "transparent"

    // Scripts that these families lack come from the system's own fallback.
    function font(style: TextStyle): font {
        return style.mono ? Fonts.mono(style.size, style.weight)
                          : Fonts.sans(style.size, style.weight);
    }

    readonly property TextStyle title: TextStyle { size: 20; lineHeight: 26; weight: Font.DemiBold }
    readonly property TextStyle hero: TextStyle { size: 18; lineHeight: 24; weight: Font.DemiBold }
    readonly property TextStyle dialogTitle: TextStyle {
        size: 16; lineHeight: 22; weight: Font.DemiBold
    }
    readonly property TextStyle heading: TextStyle {
        size: 14; lineHeight: 20; weight: Font.DemiBold
    }
    readonly property TextStyle product: TextStyle { size: 16; lineHeight: 22; weight: Font.DemiBold }
    readonly property TextStyle sidebar: TextStyle { size: 14; lineHeight: 20; weight: Font.Medium }
    readonly property TextStyle sidebarSelected: TextStyle {
        size: 14; lineHeight: 20; weight: Font.DemiBold
    }
    readonly property TextStyle emptyLine: TextStyle { size: 14; lineHeight: 20 }
    readonly property TextStyle rowTitle: TextStyle {
        size: 14; lineHeight: 20; weight: Font.DemiBold
    }
    readonly property TextStyle body: TextStyle { size: 13; lineHeight: 18 }
    readonly property TextStyle button: TextStyle { size: 13; lineHeight: 18; weight: Font.Medium }
    readonly property TextStyle small: TextStyle { size: 12; lineHeight: 16 }
    readonly property TextStyle section: TextStyle {
        size: 12; lineHeight: 16; weight: Font.DemiBold
    }
    readonly property TextStyle pill: TextStyle { size: 11; lineHeight: 14; weight: Font.DemiBold }
    readonly property TextStyle legend: TextStyle { size: 12; lineHeight: 16; weight: Font.DemiBold }
    readonly property TextStyle legendLarge: TextStyle {
        size: 13; lineHeight: 18; weight: Font.DemiBold
    }
    readonly property TextStyle legendModifier: TextStyle {
        size: 12; lineHeight: 16; weight: Font.Medium
    }
    readonly property TextStyle legendModifierLarge: TextStyle {
        size: 13; lineHeight: 18; weight: Font.Medium
    }
    readonly property TextStyle fieldLabel: TextStyle {
        size: 12; lineHeight: 16; weight: Font.Medium
    }
    readonly property TextStyle formLabel: TextStyle {
        size: 13; lineHeight: 18; weight: Font.DemiBold
    }
    readonly property TextStyle hint: TextStyle { size: 11; lineHeight: 14; weight: Font.Medium }
    readonly property TextStyle mono: TextStyle {
        size: 12; lineHeight: 16; mono: true
    }

    readonly property int pagePadding: compact ? 20 : 28
    readonly property int headerHeight: compact ? 64 : 72
    readonly property int contentMaxWidth: 860
    readonly property int sidebarWidth: compact ? 184 : 200
    readonly property int sidebarPadding: 12
    readonly property int cardPadding: 16
    readonly property int cardGap: 12

    readonly property int radiusSmall: 4
    readonly property int radiusCap: 6
    readonly property int radiusField: 8
    readonly property int radiusPopup: 10
    readonly property int radiusCard: 12
    readonly property int radiusDialog: 14

    readonly property int controlHeight: 32
    readonly property int fieldHeight: 34
    readonly property int sidebarItemHeight: 38
    readonly property int mappingRowHeight: 58
    readonly property int toggleHeight: 30
    readonly property int segmentHeight: 34
    readonly property int pillHeight: 20
    readonly property int capHeight: 26
    readonly property int capLargeHeight: 34
    readonly property int tabBarHeight: 40
    readonly property int conflictMark: 26
    readonly property int comboCapsWidth: 192
    readonly property int viewerRowHeight: 30
    readonly property int editorWidth: 660
    readonly property int dialogMargin: 24
    readonly property int dialogPadding: 25
    readonly property int dialogLabelWidth: 80
    readonly property int sectionHeight: 42
    readonly property int menuEntryHeight: 30
    readonly property int menuSectionHeight: 33
    readonly property int menuMinWidth: 248
    readonly property int menuMaxHeight: 404
    readonly property int heroTile: 52
    readonly property size switchSize: Qt.size(40, 22)
    readonly property size masterSwitchSize: Qt.size(52, 28)
    readonly property int settingsRowHeight: 48
    readonly property int ticketListWidth: 252
    readonly property int ticketRowHeight: 60
    readonly property int deviceRowHeight: 64
    readonly property int cardTile: 36
    readonly property int questionWidth: 420
    readonly property int guideWidth: 600
    readonly property int keyHint: 18

    readonly property int iconInline: 14
    readonly property int iconSmall: 16
    readonly property int iconRow: 18
    readonly property int iconSidebar: 20
    readonly property int iconBanner: 22
    readonly property int iconTile: 28
    readonly property int iconEmpty: 40
    readonly property int logo: 30

    readonly property int focusWidth: 2
    readonly property int motion: 120
    readonly property int tooltipDelay: 100
}
