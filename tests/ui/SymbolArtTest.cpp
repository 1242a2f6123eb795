#include <QTest>

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
    void appliesOpacityOnce();
    void cutsWhatLiesBelow();
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

QTEST_MAIN(SymbolArtTest)
#include "SymbolArtTest.moc"
