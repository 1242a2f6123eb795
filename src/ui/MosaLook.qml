pragma Singleton
pragma ComponentBehavior: Bound

import QtQuick
import Mosa.UI

/// Colours, fonts and measures that the views share.
QtObject {
    id: look

    // Components are those of the sRGB colour space.
    readonly property color mosaRed: Qt.rgba(0.67, 0.20, 0.18, 1)
    readonly property color mosaBackground: Qt.rgba(0.035, 0.035, 0.04, 1)
    readonly property color mosaPanel: Qt.rgba(0.10, 0.10, 0.115, 1)

    // Text and symbols on dark grounds, by rank.
    readonly property color primary: Qt.rgba(1, 1, 1, 0.9)
    readonly property color secondary: Qt.rgba(1, 1, 1, 0.58)
    readonly property color tertiary: Qt.rgba(1, 1, 1, 0.38)

    readonly property color separator: Qt.rgba(1, 1, 1, 0.16)
    readonly property color destructive: Qt.rgba(1, 0.42, 0.38, 1)
    readonly property color warning: Qt.rgba(1, 0.84, 0.04, 1)
    /// The ring around what has the keyboard's focus.
    readonly property color focusRing: Qt.rgba(0.96, 0.47, 0.43, 0.9)

    // Translucent materials: a dark tint, a hairline that catches the light, and a shadow.
    readonly property color ultraThinMaterial: Qt.rgba(0.15, 0.15, 0.165, 0.84)
    readonly property color menuMaterial: Qt.rgba(0.135, 0.135, 0.15, 0.97)
    readonly property color hairline: Qt.rgba(1, 1, 1, 0.11)

    readonly property real disabledOpacity: 0.38

    readonly property LookFonts fonts: LookFonts {}
    readonly property string family: fonts.general
    readonly property string monospacedFamily: fonts.monospaced

    readonly property font body: Qt.font({ family: look.family, pixelSize: 13 })
    readonly property font title3: Qt.font({ family: look.family, pixelSize: 15 })

    readonly property LookMotion motion: LookMotion {}
    /// The user wants nothing to move that need not: what would slide or fade is there at once.
    readonly property bool reducedMotion: motion.active
    /// How long a change takes that lasts so many milliseconds otherwise.
    function lasting(duration: int): int {
        return reducedMotion ? 0 : duration;
    }

    /// A font of the look; sizes are points of the view, which are pixels at scale 1.
    function system(size: int, weight: int): font {
        return Qt.font({ family: family, pixelSize: size, weight: weight });
    }
    function monospaced(size: int): font {
        return Qt.font({ family: monospacedFamily, pixelSize: size });
    }
    /// A translucent colour as it looks over an opaque one.
    function over(top: color, ground: color): color {
        const a = top.a;
        return Qt.rgba(top.r * a + ground.r * (1 - a), top.g * a + ground.g * (1 - a), top.b * a + ground.b * (1 - a), 1);
    }
    /// A name as it is shown in one line: it may hold line breaks.
    function oneLine(name: string): string {
        return name.replace(/\n/g, " ");
    }
    /// The colour at another opacity.
    function faded(color: color, opacity: real): color {
        return Qt.rgba(color.r, color.g, color.b, color.a * opacity);
    }
}
