#include "measure/PrimitiveHitTest.h"

void PrimitiveHitTest::reset()
{
    type = NoHit;
    index = -1;
    outlineIndex = -1;
    dimensionIndex = -1;
    pressPos = QPointF();
    point = ControlPoint();
    button = 0;
}
