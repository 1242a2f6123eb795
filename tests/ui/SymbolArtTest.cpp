#include <QTest>

#include "SymbolArt.h"

class SymbolArtTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsEverySymbol_data();
    void drawsEverySymbol();
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

QTEST_MAIN(SymbolArtTest)
#include "SymbolArtTest.moc"
