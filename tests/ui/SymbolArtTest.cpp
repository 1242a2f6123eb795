#include <QTest>

#include "SmoothRectangle.h"
#include "SymbolArt.h"
#include "SymbolIcon.h"

namespace {

/// A symbol as it is drawn into 48 pixels.
class DrawnSymbol : public SymbolIcon {
public:
    DrawnSymbol(const QString &name, const QColor &color) {
        setName(name);
        setColor(color);
        setSize(48);
    }
    QImage image() const {
        QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        draw(image, image.rect(), 1);
        return image;
    }
};

} // namespace

class SymbolArtTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsEverySymbol_data();
    void drawsEverySymbol();
    void readsPaths_data();
    void readsPaths();
    void appliesOpacityOnce();
    void cutsWhatLiesBelow();
    void roundsCornersWithinTheShape_data();
    void roundsCornersWithinTheShape();
};

void SymbolArtTest::drawsEverySymbol_data() {
    QTest::addColumn<QString>("name");
    for (const QString &name : SymbolArt::names()) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void SymbolArtTest::drawsEverySymbol() {
    QFETCH(QString, name);
    const QList<SymbolArt::Layer> layers = SymbolArt::layers(name);
    QVERIFY(!layers.isEmpty());
    for (const SymbolArt::Layer &layer : layers) {
        QVERIFY(!layer.path.isEmpty());
        // A line's half width from the edge of the grid, so that nothing is clipped.
        const QRectF bounds = layer.path.boundingRect().adjusted(-0.01, -0.01, 0.01, 0.01);
        QVERIFY(QRectF(1.4, 1.4, 21.2, 21.2).contains(bounds));
    }
}

void SymbolArtTest::readsPaths_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QRectF>("bounds");

    QTest::newRow("lines") << QByteArray("M 1 2 L 5 2 V 6 H 1 Z") << QRectF(1, 2, 4, 4);
    QTest::newRow("circle") << QByteArray("O 5 5 2") << QRectF(3, 3, 4, 4);
    QTest::newRow("rectangle") << QByteArray("R 1 2 3 4 1") << QRectF(1, 2, 3, 4);
    QTest::newRow("half circle") << QByteArray("A 5 5 2 -90 180") << QRectF(5, 3, 2, 4);
    QTest::newRow("too few numbers") << QByteArray("M 1 2 L 5") << QRectF();
    QTest::newRow("unknown command") << QByteArray("M 1 2 X 5") << QRectF();
}

void SymbolArtTest::readsPaths() {
    QFETCH(QByteArray, text);
    QFETCH(QRectF, bounds);
    const QRectF read = SymbolArt::parsePath(text.constData()).boundingRect();
    QVERIFY(qAbs(read.left() - bounds.left()) < 0.01);
    QVERIFY(qAbs(read.top() - bounds.top()) < 0.01);
    QVERIFY(qAbs(read.right() - bounds.right()) < 0.01);
    QVERIFY(qAbs(read.bottom() - bounds.bottom()) < 0.01);
}

void SymbolArtTest::appliesOpacityOnce() {
    // The cloth and its outline overlap.
    const QImage image = DrawnSymbol(QStringLiteral("flag.fill"), QColor(255, 255, 255, 128)).image();
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            most = qMax(most, qAlpha(image.pixel(x, y)));
        }
    }
    QCOMPARE(most, 128);
}

void SymbolArtTest::cutsWhatLiesBelow() {
    const QImage image = DrawnSymbol(QStringLiteral("exclamationmark.triangle.fill"), Qt::yellow).image();
    QCOMPARE(qAlpha(image.pixel(24, 22)), 0);
    QCOMPARE(qAlpha(image.pixel(16, 36)), 255);
}

void SymbolArtTest::roundsCornersWithinTheShape_data() {
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("radius");

    QTest::newRow("room for the corners") << QSizeF(200, 100) << 10.0;
    QTest::newRow("little room") << QSizeF(28, 28) << 12.0;
    QTest::newRow("circle") << QSizeF(26, 26) << 13.0;
    QTest::newRow("radius too large") << QSizeF(40, 10) << 50.0;
}

void SymbolArtTest::roundsCornersWithinTheShape() {
    QFETCH(QSizeF, size);
    QFETCH(double, radius);
    const QRectF rect(QPointF(3, 4), size);
    const QPainterPath path = SmoothRectangle::path(rect, radius);
    QCOMPARE(path.boundingRect(), rect);
    // The corner passes where a circle's would at its middle: the same roundness to the eye.
    const double bounded = qMin(radius, qMin(size.width(), size.height()) / 2);
    const double middle = bounded * (1 - M_SQRT1_2);
    QVERIFY(!path.contains(rect.topLeft() + QPointF(middle - 0.1, middle - 0.1)));
    QVERIFY(path.contains(rect.topLeft() + QPointF(middle + 0.1, middle + 0.1)));
}

QTEST_MAIN(SymbolArtTest)
#include "SymbolArtTest.moc"
