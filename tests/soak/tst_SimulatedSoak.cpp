#include "CameraUser.h"
#include "Soak.h"

class tst_SimulatedSoak final : public QObject
{
    Q_OBJECT

private slots:
    void staysSoundInUse()
    {
        Soak soak;
        CameraUser user(soak.log(), soak.folder());
        const QString problem = soak.run([&](int) {
            const bool tryStill = user.isOneIn(2);
            user.open([tryStill](MyCamera& camera) {
                return camera.open(CWDevice_Simulated, 0, tryStill);
            });
            user.useAll();
            user.close();
        });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
};

int main(int argc, char** argv)
{
    return Soak::main<tst_SimulatedSoak>(argc, argv);
}

#include "tst_SimulatedSoak.moc"
