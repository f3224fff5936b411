#include "canvas/QtCornerBox.h"
#include "canvas/QtRuleBar.h"

#include <QPaintEngine>
#include <QPainter>
#include <QtTest>

#include <map>

namespace {

/// Records what is painted on it: texts with their place, and lines.
class Recorder : public QPaintDevice, public QPaintEngine
{
public:
    explicit Recorder(const QSize& deviceSize) : QPaintEngine(AllFeatures), size(deviceSize) {}

    std::map<int, QString> labels; ///< By the place along the ruler.
    QVector<QLine> lines;

    QPaintEngine* paintEngine() const override { return const_cast<Recorder*>(this); }
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState& newState) override
    {
        if (newState.state() & DirtyTransform)
            transform = newState.transform();
    }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawTextItem(const QPointF& at, const QTextItem& item) override
    {
        const QPointF place = transform.map(at);
        const bool horizontal = size.width() > size.height();
        labels[qRound(horizontal ? place.x() : place.y())] = item.text();
    }
    void drawLines(const QLine* first, int count) override
    {
        for (int i = 0; i < count; ++i)
            lines.append(first[i]);
    }
    void drawLines(const QLineF* first, int count) override
    {
        for (int i = 0; i < count; ++i)
            lines.append(first[i].toLine());
    }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return size.width();
        case PdmHeight:
            return size.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return qRound(devicePixelRatioFScale());
        default:
            return 0;
        }
    }

private:
    QSize size;
    QTransform transform;
};

struct Drawn
{
    std::map<int, QString> labels;
    QVector<QLine> lines;

    QStringList texts() const
    {
        QStringList result;
        for (const auto& label : labels)
            result << label.second;
        return result;
    }
};

/// What a horizontal ruler of that length draws for a range.
Drawn drawn(int length, double lower, double upper, const QPoint& cursor = QPoint(-100, -100))
{
    QtRuleBar ruler(QtRuleBar::Horizontal, nullptr, nullptr);
    ruler.resize(length, 16);
    ruler.setRange(lower, upper, upper - lower);
    ruler.updatePosition(cursor);
    Recorder recorder(ruler.size());
    QPainter painter(&recorder);
    ruler.render(&painter);
    painter.end();
    return {recorder.labels, recorder.lines};
}

/// Places of the vertical strokes of at least that length, the cursor marker left out.
QVector<int> ticks(const Drawn& ruler, int shortest = 1)
{
    QVector<int> result;
    for (const QLine& line : ruler.lines) {
        const int length = line.y2() - line.y1() + 1;
        if (line.x1() == line.x2() && length >= shortest && line.x1() >= 0)
            result << line.x1();
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace

class tst_QtRuleBar : public QObject
{
    Q_OBJECT

private slots:
    void labelsStandAtMultiplesOfAScale()
    {
        const Drawn ruler = drawn(1000, 0.0, 1000.0);
        QVERIFY(ruler.labels.size() > 3);
        int previous = -1;
        for (const auto& [place, text] : ruler.labels) {
            // A label stands two pixels behind its tick, and here a pixel is a unit.
            QCOMPARE(text.toInt(), place - 2);
            if (previous >= 0)
                QCOMPARE((place - 2 - previous) % 50, 0);
            previous = place - 2;
        }
        QVERIFY(ruler.texts().contains(QStringLiteral("0")));
    }

    void thousandsAreAbbreviated_data()
    {
        QTest::addColumn<double>("lower");
        QTest::addColumn<double>("upper");
        QTest::addColumn<QString>("present");
        QTest::newRow("2000") << 1000.0 << 3000.0 << "2k";
        QTest::newRow("-3000") << -4000.0 << -2000.0 << "-3k";
        QTest::newRow("2500") << 2000.0 << 3000.0 << "2500";
        QTest::newRow("1000") << 500.0 << 1500.0 << "1000";
    }

    void thousandsAreAbbreviated()
    {
        QFETCH(double, lower);
        QFETCH(double, upper);
        QFETCH(QString, present);
        const Drawn ruler = drawn(2000, lower, upper);
        QVERIFY2(ruler.texts().contains(present), qPrintable(ruler.texts().join(QLatin1Char(' '))));
    }

    void atTheLargestZoomEveryPictureColumnHasATick()
    {
        const QVector<int> places = ticks(drawn(960, 0.0, 30.0));
        for (int column = 0; column <= 30; ++column)
            QVERIFY2(places.contains(column * 32), qPrintable(QString::number(column)));
    }

    void ticksCloserThanFivePixelsAreNotDrawn()
    {
        const QVector<int> places = ticks(drawn(1000, 0.0, 4000.0));
        for (int i = 1; i < places.size(); ++i)
            QVERIFY(places[i] == places[i - 1] || places[i] - places[i - 1] >= 5);
    }

    void coarserTicksAreLonger()
    {
        const Drawn ruler = drawn(1000, 0.0, 1000.0);
        QVERIFY(ticks(ruler, 15).size() < ticks(ruler, 7).size());
        QVERIFY(ticks(ruler, 7).size() < ticks(ruler, 1).size());
    }

    void aRangeOfNoWidthPaintsOnlyEdgeAndMarker()
    {
        const Drawn ruler = drawn(300, 5.0, 5.0, QPoint(70, 8));
        QVERIFY(ruler.labels.empty());
        QCOMPARE(ruler.lines.size(), 2);
        QCOMPARE(ruler.lines[0], QLine(0, 15, 299, 15));
        QCOMPARE(ruler.lines[1], QLine(70, 0, 70, 16));
    }

    void aReversedRangeRunsTheOtherWay()
    {
        const Drawn ruler = drawn(1000, 1000.0, 0.0);
        QVERIFY(ruler.labels.size() > 3);
        int previous = 2000;
        for (const auto& label : ruler.labels) {
            QVERIFY(label.second.toInt() < previous);
            previous = label.second.toInt();
        }
        QVERIFY(ticks(ruler).size() > 20);
    }

    void verticalRulerLabelsRunDownwards()
    {
        QtRuleBar ruler(QtRuleBar::Vertical, nullptr, nullptr);
        ruler.resize(16, 1000);
        ruler.setRange(0.0, 1000.0, 1000.0);
        Recorder recorder(ruler.size());
        QPainter painter(&recorder);
        ruler.render(&painter);
        painter.end();
        QVERIFY(recorder.labels.size() > 3);
        int previous = -1;
        for (const auto& label : recorder.labels) {
            QVERIFY(label.second.toInt() > previous);
            previous = label.second.toInt();
        }
    }

    void theMarkerFollowsTheCursorAndOnlyRepaintsThen()
    {
        QtRuleBar ruler(QtRuleBar::Horizontal, nullptr, nullptr);
        ruler.resize(300, 16);
        ruler.setRange(5.0, 5.0, 0.0);
        ruler.updatePosition(QPoint(120, 40));
        const QImage picture = ruler.grab().toImage();
        QCOMPARE(picture.pixelColor(120, 5), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(121, 5), QColor(Qt::white));
    }

    void theCornerIsACrossOnWhite()
    {
        QtCornerBox box(nullptr);
        box.resize(16, 16);
        const QImage picture = box.grab().toImage();
        const QPoint centre = box.rect().center();
        QCOMPARE(picture.pixelColor(centre.x(), 0), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(0, centre.y()), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::white));
    }
};

QTEST_MAIN(tst_QtRuleBar)
#include "tst_QtRuleBar.moc"
