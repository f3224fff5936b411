#include "CameraUser.h"
#include "PeerLosses.h"
#include "Soak.h"
#include "zolens/gige/FakeBox.h"

/// A network box that is lost in each cycle.
class tst_BoxSoak final : public QObject
{
    Q_OBJECT

private slots:
    void staysSoundInUse()
    {
        FakeBox box;
        QVERIFY(box.start());
        Soak soak;
        CameraUser user(soak.log(), soak.folder());
        PeerLosses losses(box, soak.log(), user);
        const QString problem = soak.run([&](int number) {
            user.open([&box](MyCamera& camera) {
                return camera.open(CWDevice_NetworkBox, box.address());
            });
            user.useAll();
            losses.close(number);
        });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
};

int main(int argc, char** argv)
{
    return Soak::main<tst_BoxSoak>(argc, argv);
}

#include "tst_BoxSoak.moc"
