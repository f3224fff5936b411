#include "preferences/AttributeKeys.h"
#include "support/CanvasFixture.h"

/// Attribute hashes come from the settings store, which anybody may have written to.
class tst_DamagedAttributes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        line = canvas->drawMeasuring(ToolType::Line, {QPointF(100, 100), QPointF(300, 100)});
    }
    void cleanup() { canvas.reset(); }

    void aSizeThatIsNoNumberBecomesZero_data()
    {
        QTest::addColumn<double>("size");
        QTest::newRow("not a number") << qQNaN();
        QTest::newRow("infinite") << qInf();
        QTest::newRow("negative infinite") << -qInf();
    }

    void aSizeThatIsNoNumberBecomesZero()
    {
        QFETCH(double, size);
        line->setAttributes({{AttributeKeys::ctrlPointRadius(), size},
                             {AttributeKeys::ctrlPointBorderWidth(), size},
                             {AttributeKeys::angularDimensionRadius(), size}});
        QCOMPARE(line->getCtrlPointRadius(), 0.0);
        QCOMPARE(line->getCtrlPointBorderWidth(), 0.0);
        QCOMPARE(line->getDimensionAngularRadius(), 0.0);
        QCOMPARE(line->boundingRect(), QRectF(0, 0, 200, 0));
    }

    void aHugeBorderIsHeld()
    {
        line->setCtrlPointBorderWidth(1e300);
        QCOMPARE(line->getCtrlPointBorderWidth(), 1e6);
        line->setCtrlPointBorderWidth(-1e300);
        QCOMPARE(line->getCtrlPointBorderWidth(), -1e6);
    }

    void anUnknownPenStyleIsASolidLine_data()
    {
        QTest::addColumn<int>("style");
        QTest::newRow("negative") << -1;
        QTest::newRow("custom dashes") << int(Qt::CustomDashLine);
        QTest::newRow("large") << 4711;
    }

    void anUnknownPenStyleIsASolidLine()
    {
        QFETCH(int, style);
        line->setAttributes({{AttributeKeys::linePenStyle(), style}});
        QCOMPARE(line->getLinePenStyle(), Qt::SolidLine);
        QCOMPARE(line->attributes()[AttributeKeys::linePenStyle()].toInt(), style);
    }

    void valuesOfAnotherTypeCountAsEmpty()
    {
        const QString text = QStringLiteral("neither a number nor a colour");
        line->setAttributes({{AttributeKeys::lineWidth(), text},
                             {AttributeKeys::lineColor(), QPoint(3, 4)},
                             {AttributeKeys::dimensionTextColor(), QByteArray("\xff\x00")},
                             {AttributeKeys::dimensionFont(), 7}});
        QCOMPARE(line->getLineWidth(), 0);
        QVERIFY(!line->getLineColor().isValid());
        QVERIFY(!line->dimensionTextColor().isValid());
        QCOMPARE(line->dimensionFont(), QFont());
    }

    void aToolWithoutAnyAttributesIsDrawn()
    {
        line->setAttributes({});
        QVERIFY(!canvas->shown().isNull());
    }

private:
    std::unique_ptr<CanvasFixture> canvas;
    PrimitiveDimensionTool* line = nullptr;
};

QTEST_MAIN(tst_DamagedAttributes)
#include "tst_DamagedAttributes.moc"
