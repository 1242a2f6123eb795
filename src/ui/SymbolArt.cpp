#include "SymbolArt.h"

#include <QHash>
#include <QRectF>

#include <array>
#include <cstdlib>
#include <optional>

namespace {

using Kind = SymbolArt::Layer::Kind;

/// How many numbers follow each command letter.
std::optional<int> argumentCount(char command) {
    switch (command) {
    case 'Z':
        return 0;
    case 'H':
    case 'V':
        return 1;
    case 'M':
    case 'L':
        return 2;
    case 'O':
        return 3;
    case 'Q':
        return 4;
    case 'R':
    case 'A':
        return 5;
    case 'C':
        return 6;
    default:
        return std::nullopt;
    }
}

void append(QPainterPath &path, char command, const std::array<double, 6> &n) {
    switch (command) {
    case 'M':
        path.moveTo(n[0], n[1]);
        break;
    case 'L':
        path.lineTo(n[0], n[1]);
        break;
    case 'H':
        path.lineTo(n[0], path.currentPosition().y());
        break;
    case 'V':
        path.lineTo(path.currentPosition().x(), n[0]);
        break;
    case 'Q':
        path.quadTo(n[0], n[1], n[2], n[3]);
        break;
    case 'C':
        path.cubicTo(n[0], n[1], n[2], n[3], n[4], n[5]);
        break;
    case 'O':
        path.addEllipse(QPointF(n[0], n[1]), n[2], n[2]);
        break;
    case 'R':
        path.addRoundedRect(QRectF(n[0], n[1], n[2], n[3]), n[4], n[4]);
        break;
    case 'A': {
        const QRectF circle(n[0] - n[2], n[1] - n[2], 2 * n[2], 2 * n[2]);
        path.arcMoveTo(circle, n[3]);
        path.arcTo(circle, n[3], n[4]);
        break;
    }
    default:
        path.closeSubpath();
        break;
    }
}

struct Drawing {
    Kind kind;
    const char *path;
};

// Outlines that an outlined and a filled symbol share.
constexpr const char *folderShape =
    "M 3 7 Q 3 5 5 5 L 9 5 Q 9.9 5 10.5 5.6 L 11.8 6.9 Q 12.4 7.5 13.3 7.5 L 19 7.5 "
    "Q 21 7.5 21 9.5 L 21 17 Q 21 19 19 19 L 5 19 Q 3 19 3 17 Z";
constexpr const char *flagPole = "M 5.5 3.5 L 5.5 21";
constexpr const char *flagCloth =
    "M 5.5 4.6 C 8 3.3 10.4 3.4 12.6 4.5 C 14.8 5.6 17 5.6 19.5 4.5 L 19.5 13.6 "
    "C 17 14.7 14.8 14.7 12.6 13.6 C 10.4 12.5 8 12.4 5.5 13.7 Z";
constexpr const char *speakerShape = "M 3 9.8 Q 3 9 3.8 9 L 6.6 9 L 10.4 5.7 Q 11.5 4.8 11.5 6.2 L 11.5 17.8 "
                                     "Q 11.5 19.2 10.4 18.3 L 6.6 15 L 3.8 15 Q 3 15 3 14.2 Z";
constexpr const char *slash = "M 4 4 L 20.5 20.5";

const QHash<QString, QList<Drawing>> &drawings() {
    static const QHash<QString, QList<Drawing>> all{
        {QStringLiteral("chevron.left"), {{Kind::stroke, "M 15 5 L 8 12 L 15 19"}}},
        {QStringLiteral("chevron.right"), {{Kind::stroke, "M 9 5 L 16 12 L 9 19"}}},
        {QStringLiteral("chevron.up"), {{Kind::stroke, "M 5 15.5 L 12 8.5 L 19 15.5"}}},
        {QStringLiteral("chevron.down"), {{Kind::stroke, "M 5 8.5 L 12 15.5 L 19 8.5"}}},
        {QStringLiteral("folder"), {{Kind::stroke, folderShape}}},
        {QStringLiteral("folder.fill"), {{Kind::fill, folderShape}}},
        {QStringLiteral("film.stack"),
         {{Kind::stroke, "M 8 3 L 16 3 M 5.5 6 L 18.5 6 R 3 9 18 12 2.2 M 7.5 9 L 7.5 21 M 16.5 9 L 16.5 21 "
                         "M 3 13 L 7.5 13 M 3 17 L 7.5 17 M 16.5 13 L 21 13 M 16.5 17 L 21 17"}}},
        {QStringLiteral("photo"),
         {{Kind::stroke,
           "R 3 4.5 18 15 2.6 M 3.4 17.2 L 7.9 12.9 Q 8.8 12.1 9.7 12.9 L 12.8 15.8 L 14.9 13.9 "
           "Q 15.8 13.1 16.7 13.9 L 20.6 17.2"},
          {Kind::fill, "O 15.6 9 1.7"}}},
        {QStringLiteral("flag"), {{Kind::stroke, flagPole}, {Kind::stroke, flagCloth}}},
        {QStringLiteral("flag.fill"),
         {{Kind::stroke, flagPole}, {Kind::fill, flagCloth}, {Kind::stroke, flagCloth}}},
        {QStringLiteral("flag.slash"),
         {{Kind::stroke, flagPole},
          {Kind::stroke, flagCloth},
          {Kind::cutStroke, slash},
          {Kind::stroke, slash}}},
        {QStringLiteral("xmark"), {{Kind::stroke, "M 6 6 L 18 18 M 18 6 L 6 18"}}},
        {QStringLiteral("checkmark"), {{Kind::stroke, "M 5 12.8 L 9.8 17.8 L 19 6.4"}}},
        {QStringLiteral("line.3.horizontal"), {{Kind::stroke, "M 4 7 L 20 7 M 4 12 L 20 12 M 4 17 L 20 17"}}},
        {QStringLiteral("speaker.wave.2.fill"),
         {{Kind::fill, speakerShape}, {Kind::stroke, "A 11.2 12 5 -42 84 A 11.2 12 8.9 -46 92"}}},
        {QStringLiteral("speaker.slash.fill"),
         {{Kind::fill, speakerShape},
          {Kind::stroke, "A 11.2 12 5 -42 84 A 11.2 12 8.9 -46 92"},
          {Kind::cutStroke, slash},
          {Kind::stroke, slash}}},
        {QStringLiteral("play.fill"),
         {{Kind::fill,
           "M 6.5 5.4 Q 6.5 3.6 8.1 4.5 L 19 10.9 Q 20.6 12 19 13.1 L 8.1 19.5 Q 6.5 20.4 6.5 18.6 Z"}}},
        {QStringLiteral("pause.fill"), {{Kind::fill, "R 5.8 4.2 4.4 15.6 1.4 R 13.8 4.2 4.4 15.6 1.4"}}},
        {QStringLiteral("captions.bubble"),
         {{Kind::stroke,
           "M 6 4 L 18 4 Q 21 4 21 7 L 21 14 Q 21 17 18 17 L 12.4 17 L 8.6 20.4 Q 7.6 21.2 7.6 20 "
           "L 7.6 17 L 6 17 Q 3 17 3 14 L 3 7 Q 3 4 6 4 Z M 7 9 L 12 9 M 15 9 L 17 9 "
           "M 7 12.7 L 9 12.7 M 12 12.7 L 17 12.7"}}},
        {QStringLiteral("exclamationmark.triangle.fill"),
         {{Kind::fill, "M 10.4 4 Q 12 1.6 13.6 4 L 21.6 18 Q 22.8 20.6 20 20.7 L 4 20.7 Q 1.2 20.6 2.4 18 Z"},
          {Kind::cutLine, "M 12 9 L 12 13.4"},
          {Kind::cutFill, "O 12 16.9 1.2"}}},
        {QStringLiteral("arrow.up.left.and.arrow.down.right"),
         {{Kind::stroke, "M 4.5 10.5 L 4.5 4.5 L 10.5 4.5 M 4.5 4.5 L 10.4 10.4 "
                         "M 19.5 13.5 L 19.5 19.5 L 13.5 19.5 M 19.5 19.5 L 13.6 13.6"}}},
        {QStringLiteral("arrow.down.right.and.arrow.up.left"),
         {{Kind::stroke, "M 10.4 4.4 L 10.4 10.4 L 4.4 10.4 M 10.4 10.4 L 4 4 "
                         "M 13.6 19.6 L 13.6 13.6 L 19.6 13.6 M 13.6 13.6 L 20 20"}}},
        {QStringLiteral("trash"),
         {{Kind::stroke, "M 4 6.5 L 20 6.5 M 9 6.5 L 9 5 Q 9 3.5 10.5 3.5 L 13.5 3.5 Q 15 3.5 15 5 L 15 6.5 "
                         "M 6 6.5 L 6.8 18.6 Q 7 20.5 8.9 20.5 L 15.1 20.5 Q 17 20.5 17.2 18.6 L 18 6.5"}}},
        {QStringLiteral("window.close"), {{Kind::stroke, "M 7 7 L 17 17 M 17 7 L 7 17"}}},
        {QStringLiteral("window.minimise"), {{Kind::stroke, "M 6 12 L 18 12"}}},
        {QStringLiteral("window.zoom"), {{Kind::stroke, "M 12 6 L 12 18 M 6 12 L 18 12"}}},
        {QStringLiteral("window.restore"),
         {{Kind::stroke, "M 5 13.5 L 10.5 13.5 L 10.5 19 M 19 10.5 L 13.5 10.5 L 13.5 5"}}},
        {QStringLiteral("progress.arc"), {{Kind::stroke, "A 12 12 9 90 -100"}}},
        {QStringLiteral("progress.ring"), {{Kind::stroke, "O 12 12 9"}}},
    };
    return all;
}

} // namespace

QPainterPath SymbolArt::parsePath(const char *text) {
    QPainterPath path;
    while (*text != '\0') {
        if (*text == ' ') {
            ++text;
            continue;
        }
        const char command = *text++;
        const std::optional<int> count = argumentCount(command);
        if (!count) {
            return {};
        }
        std::array<double, 6> numbers{};
        for (int i = 0; i < *count; ++i) {
            char *end = nullptr;
            numbers[size_t(i)] = std::strtod(text, &end);
            if (end == text) {
                return {};
            }
            text = end;
        }
        append(path, command, numbers);
    }
    return path;
}

QList<SymbolArt::Layer> SymbolArt::layers(const QString &name) {
    QList<Layer> result;
    const auto drawing = drawings().constFind(name);
    if (drawing == drawings().cend()) {
        return result;
    }
    for (const Drawing &step : *drawing) {
        result.append({step.kind, parsePath(step.path)});
    }
    return result;
}

QStringList SymbolArt::names() {
    return drawings().keys();
}
