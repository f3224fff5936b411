#include <WindowEdges.h>

#include <QTest>

using namespace zowidgets;

Q_DECLARE_METATYPE(Qt::Edges)

class tst_WindowEdges : public QObject
{
    Q_OBJECT

private slots:
    void findsEdges_data();
    void findsEdges();
    void aWindowWithoutBorderHasNoEdges();
    void aTinyWindowNamesNoOppositeEdges();
    void cursorTellsTheDirection_data();
    void cursorTellsTheDirection();
    void dragsGeometry_data();
    void dragsGeometry();
    void keepsTheOppositeEdgeAtALimit_data();
    void keepsTheOppositeEdgeAtALimit();
};

void tst_WindowEdges::findsEdges_data()
{
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<Qt::Edges>("edges");
    const Qt::Edges none;
    QTest::newRow("left") << QPoint(3, 50) << Qt::Edges(Qt::LeftEdge);
    QTest::newRow("inside of left") << QPoint(4, 50) << none;
    QTest::newRow("right") << QPoint(196, 50) << Qt::Edges(Qt::RightEdge);
    QTest::newRow("inside of right") << QPoint(195, 50) << none;
    QTest::newRow("top") << QPoint(100, 0) << Qt::Edges(Qt::TopEdge);
    QTest::newRow("inside of top") << QPoint(100, 4) << none;
    QTest::newRow("bottom") << QPoint(100, 99) << Qt::Edges(Qt::BottomEdge);
    QTest::newRow("inside of bottom") << QPoint(100, 95) << none;
    QTest::newRow("top left") << QPoint(0, 0) << (Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("top right") << QPoint(199, 0) << (Qt::TopEdge | Qt::RightEdge);
    QTest::newRow("bottom left") << QPoint(0, 99) << (Qt::BottomEdge | Qt::LeftEdge);
    QTest::newRow("bottom right") << QPoint(199, 99) << (Qt::BottomEdge | Qt::RightEdge);
    QTest::newRow("corner reaches along the top") << QPoint(11, 2) << (Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("top beside the corner") << QPoint(12, 2) << Qt::Edges(Qt::TopEdge);
    QTest::newRow("corner reaches along the right")
        << QPoint(198, 88) << (Qt::BottomEdge | Qt::RightEdge);
    QTest::newRow("inside of the corner") << QPoint(6, 6) << none;
    QTest::newRow("outside") << QPoint(-1, 50) << none;
    QTest::newRow("middle") << QPoint(100, 50) << none;
}

void tst_WindowEdges::findsEdges()
{
    QFETCH(QPoint, pos);
    QFETCH(Qt::Edges, edges);
    QCOMPARE(edgesAt(pos, QSize(200, 100), 4), edges);
}

void tst_WindowEdges::aWindowWithoutBorderHasNoEdges()
{
    QCOMPARE(edgesAt(QPoint(0, 0), QSize(200, 100), 0), Qt::Edges());
    QCOMPARE(edgesAt(QPoint(0, 0), QSize(200, 100), -3), Qt::Edges());
    QCOMPARE(edgesAt(QPoint(0, 0), QSize(), 4), Qt::Edges());
}

void tst_WindowEdges::aTinyWindowNamesNoOppositeEdges()
{
    for (int x = 0; x < 6; ++x) {
        for (int y = 0; y < 6; ++y) {
            const Qt::Edges edges = edgesAt(QPoint(x, y), QSize(6, 6), 4);
            QVERIFY(!(edges.testFlag(Qt::LeftEdge) && edges.testFlag(Qt::RightEdge)));
            QVERIFY(!(edges.testFlag(Qt::TopEdge) && edges.testFlag(Qt::BottomEdge)));
        }
    }
}

void tst_WindowEdges::cursorTellsTheDirection_data()
{
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<Qt::CursorShape>("shape");
    QTest::newRow("none") << Qt::Edges() << Qt::ArrowCursor;
    QTest::newRow("left") << Qt::Edges(Qt::LeftEdge) << Qt::SizeHorCursor;
    QTest::newRow("right") << Qt::Edges(Qt::RightEdge) << Qt::SizeHorCursor;
    QTest::newRow("top") << Qt::Edges(Qt::TopEdge) << Qt::SizeVerCursor;
    QTest::newRow("bottom") << Qt::Edges(Qt::BottomEdge) << Qt::SizeVerCursor;
    QTest::newRow("top left") << (Qt::TopEdge | Qt::LeftEdge) << Qt::SizeFDiagCursor;
    QTest::newRow("bottom right") << (Qt::BottomEdge | Qt::RightEdge) << Qt::SizeFDiagCursor;
    QTest::newRow("top right") << (Qt::TopEdge | Qt::RightEdge) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom left") << (Qt::BottomEdge | Qt::LeftEdge) << Qt::SizeBDiagCursor;
}

void tst_WindowEdges::cursorTellsTheDirection()
{
    QFETCH(Qt::Edges, edges);
    QFETCH(Qt::CursorShape, shape);
    QCOMPARE(resizeCursor(edges), shape);
}

void tst_WindowEdges::dragsGeometry_data()
{
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<QRect>("geometry");
    // From 300 x 200 at (100, 50), dragged by 20 to the right and 10 down.
    QTest::newRow("move") << Qt::Edges() << QRect(120, 60, 300, 200);
    QTest::newRow("left") << Qt::Edges(Qt::LeftEdge) << QRect(120, 50, 280, 200);
    QTest::newRow("right") << Qt::Edges(Qt::RightEdge) << QRect(100, 50, 320, 200);
    QTest::newRow("top") << Qt::Edges(Qt::TopEdge) << QRect(100, 60, 300, 190);
    QTest::newRow("bottom") << Qt::Edges(Qt::BottomEdge) << QRect(100, 50, 300, 210);
    QTest::newRow("top left") << (Qt::TopEdge | Qt::LeftEdge) << QRect(120, 60, 280, 190);
    QTest::newRow("top right") << (Qt::TopEdge | Qt::RightEdge) << QRect(100, 60, 320, 190);
    QTest::newRow("bottom left") << (Qt::BottomEdge | Qt::LeftEdge) << QRect(120, 50, 280, 210);
    QTest::newRow("bottom right") << (Qt::BottomEdge | Qt::RightEdge) << QRect(100, 50, 320, 210);
}

void tst_WindowEdges::dragsGeometry()
{
    QFETCH(Qt::Edges, edges);
    QFETCH(QRect, geometry);
    const SizeLimits wide{QSize(50, 40), QSize(2000, 2000)};
    QCOMPARE(draggedGeometry(QRect(100, 50, 300, 200), QPoint(20, 10), edges, wide), geometry);
}

void tst_WindowEdges::keepsTheOppositeEdgeAtALimit_data()
{
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QRect>("geometry");
    const Qt::Edges topLeft = Qt::TopEdge | Qt::LeftEdge;
    const Qt::Edges bottomRight = Qt::BottomEdge | Qt::RightEdge;
    QTest::newRow("smallest from top left")
        << topLeft << QPoint(900, 900) << QRect(300, 170, 100, 80);
    QTest::newRow("smallest from bottom right")
        << bottomRight << QPoint(-900, -900) << QRect(100, 50, 100, 80);
    QTest::newRow("largest from top left")
        << topLeft << QPoint(-900, -900) << QRect(0, -50, 400, 300);
    QTest::newRow("largest from bottom right")
        << bottomRight << QPoint(900, 900) << QRect(100, 50, 400, 300);
}

void tst_WindowEdges::keepsTheOppositeEdgeAtALimit()
{
    QFETCH(Qt::Edges, edges);
    QFETCH(QPoint, by);
    QFETCH(QRect, geometry);
    const SizeLimits limits{QSize(100, 80), QSize(400, 300)};
    QCOMPARE(draggedGeometry(QRect(100, 50, 300, 200), by, edges, limits), geometry);
}

QTEST_GUILESS_MAIN(tst_WindowEdges)
#include "tst_WindowEdges.moc"
