#include "gige/LastHolder.h"

#include <QtTest>

#include <future>
#include <optional>
#include <thread>

using zolens::AravisPointer;
using zolens::LastHolder;

namespace {

/// Long enough to get past who does not wait.
constexpr std::chrono::milliseconds moment(50);

/// Where the object ends.
class End final
{
public:
    explicit End(GObject* object) { g_object_weak_ref(object, &End::note, this); }

    bool hasCome() const { return thread.has_value(); }
    bool isHere() const { return thread == std::this_thread::get_id(); }

private:
    static void note(gpointer end, GObject*)
    {
        static_cast<End*>(end)->thread = std::this_thread::get_id();
    }

    std::optional<std::thread::id> thread;
};

AravisPointer<GObject> makeObject()
{
    return AravisPointer<GObject>(static_cast<GObject*>(g_object_new(G_TYPE_OBJECT, nullptr)));
}

/// Lets an object go on a thread of its own, some time after it was told to.
class OtherHolder final
{
public:
    explicit OtherHolder(GObject* object)
        : thread([this, held = static_cast<GObject*>(g_object_ref(object))] {
              word.get_future().wait();
              std::this_thread::sleep_for(moment);
              hasLetGo = true;
              g_object_unref(held);
          })
    {
    }
    ~OtherHolder() { thread.join(); }
    Q_DISABLE_COPY(OtherHolder)

    void letGoSoon() { word.set_value(); }

    std::atomic<bool> hasLetGo{false};

private:
    std::promise<void> word;
    std::thread thread;
};

} // namespace

class tst_LastHolder final : public QObject
{
    Q_OBJECT

private slots:
    void holdsTheObject()
    {
        auto object = makeObject();
        const End end(object.get());
        auto holder = std::make_unique<LastHolder>(object.get());
        object.reset();
        QVERIFY(!end.hasCome());
        holder.reset();
        QVERIFY(end.isHere());
    }

    void waitsForAnotherThread()
    {
        auto object = makeObject();
        const End end(object.get());
        auto holder = std::make_unique<LastHolder>(object.get());
        OtherHolder other(object.get());
        object.reset();
        other.letGoSoon();
        holder.reset();
        QVERIFY(other.hasLetGo);
        QVERIFY(end.isHere());
    }

    void waitsForWhoTakesTheObjectWhenNobodyElseHeldIt()
    {
        auto object = makeObject();
        GObject* const sender = object.get();
        const End end(sender);
        auto holder = std::make_unique<LastHolder>(sender);
        object.reset();
        for (int i = 0; i < 3; ++i)
            g_object_unref(g_object_ref(sender));
        QVERIFY(!end.hasCome());
        OtherHolder other(sender);
        other.letGoSoon();
        holder.reset();
        QVERIFY(other.hasLetGo);
        QVERIFY(end.isHere());
    }

    void waitsForTheLastOfSeveral()
    {
        auto object = makeObject();
        const End end(object.get());
        auto holder = std::make_unique<LastHolder>(object.get());
        OtherHolder first(object.get());
        OtherHolder second(object.get());
        OtherHolder third(object.get());
        object.reset();
        first.letGoSoon();
        std::thread later([&] {
            std::this_thread::sleep_for(moment);
            second.letGoSoon();
            third.letGoSoon();
        });
        holder.reset();
        later.join();
        QVERIFY(first.hasLetGo && second.hasLetGo && third.hasLetGo);
        QVERIFY(end.isHere());
    }
};

QTEST_APPLESS_MAIN(tst_LastHolder)
#include "tst_LastHolder.moc"
