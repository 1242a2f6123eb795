#include "JustifiedGrid.h"
#include "MediaAspectRatioKey.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QStandardItemModel>
#include <QTest>

Q_IMPORT_QML_PLUGIN(Mosa_StatePlugin)
Q_IMPORT_QML_PLUGIN(Mosa_PlaybackPlugin)
Q_IMPORT_QML_PLUGIN(Mosa_UIPlugin)

namespace {

constexpr auto source = R"(
    import QtQuick
    import Mosa.UI

    JustifiedGrid {
        id: grid
        width: 1000
        spacing: 6
        targetHeight: 245
        Repeater {
            model: grid.model
            Item {
                required property double ratio
                required property string name
                objectName: name
                MediaAspectRatioKey.value: ratio
            }
        }
        Item { objectName: "plain" }
    }
)";

} // namespace

class JustifiedGridTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        m_model = std::make_unique<QStandardItemModel>();
        m_model->setItemRoleNames({{Qt::UserRole, "name"}, {Qt::UserRole + 1, "ratio"}});
        add("a", 5);
        add("b", 1);
        QQmlComponent component(&m_engine);
        component.setData(source, {});
        m_grid.reset(qobject_cast<JustifiedGrid *>(component.createWithInitialProperties(
            {{QStringLiteral("model"), QVariant::fromValue(m_model.get())}})));
        QVERIFY2(m_grid, qPrintable(component.errorString()));
        m_grid->forceLayout();
    }

    // 3.5 + 1 at 245 points is wider than 1000: one full row, 994 / 4.5 = 220.9 high; then the plain child at
    // 16:9.
    void laysOutByTheKeys() {
        QCOMPARE(frame("a"), QRectF(0, 0, 773, 221));
        QCOMPARE(frame("b"), QRectF(779, 0, 221, 221));
        QCOMPARE(frame("plain"), QRectF(282, 227, 436, 245));
        QVERIFY(qFuzzyCompare(m_grid->implicitHeight(), 994 / 4.5 + 6 + 245));
    }

    void followsTheModel() {
        m_model->insertRow(0, m_model->takeRow(1));
        m_grid->forceLayout();
        QCOMPARE(frame("b").x(), 0.0);
        QCOMPARE(frame("a").right(), 1000.0);
        m_model->removeRow(1);
        m_grid->forceLayout();
        QCOMPARE(frame("b").height(), 245.0);
    }

    void alignsToPixels() {
        for (int width = 200; width < 1400; width += 37) {
            m_grid->setWidth(width);
            m_grid->forceLayout();
            for (const char *name : {"a", "b", "plain"}) {
                QCOMPARE(frame(name), QRectF(frame(name).toRect()));
            }
            const bool oneRow = frame("a").y() == frame("b").y();
            QVERIFY(!oneRow || frame("b").left() - frame("a").right() == 6);
        }
    }

private:
    QRectF frame(const char *name) const {
        for (const QQuickItem *child : m_grid->childItems()) {
            if (child->objectName() == QLatin1String(name)) {
                return {child->position(), child->size()};
            }
        }
        return {};
    }
    void add(const char *name, double ratio) {
        auto *row = new QStandardItem;
        row->setData(QLatin1String(name), Qt::UserRole);
        row->setData(ratio, Qt::UserRole + 1);
        m_model->appendRow(row);
    }

    std::unique_ptr<QStandardItemModel> m_model;
    QQmlEngine m_engine;
    std::unique_ptr<JustifiedGrid> m_grid;
};

QTEST_MAIN(JustifiedGridTest)
#include "JustifiedGridTest.moc"
