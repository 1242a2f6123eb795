#pragma once

#include <QList>
#include <QPainterPath>
#include <QString>
#include <QStringList>

/// The program's own vector symbols, drawn on a grid of 24 × 24 units with y growing downwards. Pure; any
/// thread.
namespace SymbolArt {

/// One step of drawing a symbol; steps are drawn in order.
struct Layer {
    enum class Kind {
        stroke,    ///< line of the symbol's weight
        fill,      ///< filled shape
        cutStroke, ///< line erased from what is below, wider than the symbol's weight
        cutLine,   ///< line of the symbol's weight erased from what is below
        cutFill,   ///< filled shape erased from what is below
    };
    Kind kind = Kind::stroke;
    QPainterPath path;
};

/// The symbol's layers; empty for an unknown name.
QList<Layer> layers(const QString &name);

/// Every known name.
QStringList names();

/// Reads a path: "M x y", "L x y", "H x", "V y", "Q cx cy x y", "C cx cy cx cy x y", "Z", and whole shapes
/// "O cx cy r" (circle), "R x y w h r" (rounded rectangle), "A cx cy r start sweep" (arc in degrees, counter-
/// clockwise from three o'clock). Coordinates are absolute; a repeated command needs its letter again.
/// Null when the text is not such a path.
QPainterPath parsePath(const char *text);

} // namespace SymbolArt
