#include "pixels/MosaicLoops.h"

#include <QByteArray>
#include <QtTest>

#include <array>
#include <cmath>

using namespace zolens;

namespace {

constexpr int reach = 2;
constexpr char untouched = 0x5a;

/// The rows about one row, with the samples beyond its ends.
using Samples = std::array<QByteArray, 5>;

struct Colors
{
    QByteArray own, green, other;
};

const uchar* bytes(const QByteArray& row)
{
    return reinterpret_cast<const uchar*>(row.constData());
}

uchar* bytes(QByteArray* row)
{
    return reinterpret_cast<uchar*>(row->data());
}

/// With room behind that has to stay as it is.
Colors interpolated(const Samples& samples, const QByteArray& greens)
{
    constexpr int room = 40;
    const int width = greens.size();
    const QByteArray blank(width + room, untouched);
    Colors colors = {blank, blank, blank};
    const auto row = [&samples](std::size_t number) { return bytes(samples[number]) + reach; };
    interpolateColors({row(0), row(1), row(2), row(3), row(4)}, bytes(greens), width,
                      {bytes(&colors.own), bytes(&colors.green), bytes(&colors.other)});
    return colors;
}

/// The colours of a single pixel among 25 samples.
std::array<int, 3> pixel(const Samples& samples, bool isGreen)
{
    const Colors colors = interpolated(samples, QByteArray(1, isGreen ? char(0xff) : '\0'));
    return {uchar(colors.own[0]), uchar(colors.green[0]), uchar(colors.other[0])};
}

/// The weights in sixteenths that the authors of the method give, beginning two rows above.
using Weights = std::array<std::array<int, 5>, 5>;

constexpr Weights greenAtOther = {
    {{0, 0, -2, 0, 0}, {0, 0, 4, 0, 0}, {-2, 4, 8, 4, -2}, {0, 0, 4, 0, 0}, {0, 0, -2, 0, 0}}};
constexpr Weights rowColorAtGreen = {
    {{0, 0, 1, 0, 0}, {0, -2, 0, -2, 0}, {-2, 8, 10, 8, -2}, {0, -2, 0, -2, 0}, {0, 0, 1, 0, 0}}};
constexpr Weights columnColorAtGreen = {
    {{0, 0, -2, 0, 0}, {0, -2, 8, -2, 0}, {1, 0, 10, 0, 1}, {0, -2, 8, -2, 0}, {0, 0, -2, 0, 0}}};
constexpr Weights oppositeColor = {
    {{0, 0, -3, 0, 0}, {0, 4, 0, 4, 0}, {-3, 0, 12, 0, -3}, {0, 4, 0, 4, 0}, {0, 0, -3, 0, 0}}};

/// Rounded to the nearest, upwards from the middle, and held within a byte.
int weighted(const Weights& weights, const Samples& samples)
{
    int sum = 0;
    for (std::size_t y = 0; y < 5; ++y) {
        for (std::size_t x = 0; x < 5; ++x)
            sum += weights[y][x] * uchar(samples[y][int(x)]);
    }
    return qBound(0, int(std::floor(sum / 16.0 + 0.5)), 255);
}

std::array<int, 3> expected(const Samples& samples, bool isGreen)
{
    const int own = uchar(samples[2][reach]);
    if (isGreen)
        return {weighted(rowColorAtGreen, samples), own, weighted(columnColorAtGreen, samples)};
    return {own, weighted(greenAtOther, samples), weighted(oppositeColor, samples)};
}

/// The places that any of the weights looks at.
constexpr std::array<std::array<int, 2>, 13> places = {{{0, 2},
                                                        {1, 1},
                                                        {1, 2},
                                                        {1, 3},
                                                        {2, 0},
                                                        {2, 1},
                                                        {2, 2},
                                                        {2, 3},
                                                        {2, 4},
                                                        {3, 1},
                                                        {3, 2},
                                                        {3, 3},
                                                        {4, 2}}};

} // namespace

/// What pictures as a whole do not show: every rounding, sums at their extremes, ends of rows.
class tst_MosaicLoops final : public QObject
{
    Q_OBJECT

private slots:
    void roundsToTheNearest()
    {
        // At every place that counts, one sample differs by 0 to 16 from an even grey.
        for (const auto& [y, x] : places) {
            for (int more = 0; more <= 16; ++more) {
                Samples samples;
                samples.fill(QByteArray(5, char(100)));
                samples[std::size_t(y)][x] = char(100 + more);
                for (const bool isGreen : {false, true})
                    QCOMPARE(pixel(samples, isGreen), expected(samples, isGreen));
            }
        }
    }

    void holdsEveryMeetingOfBlackAndWhite()
    {
        for (unsigned white = 0; white < 1U << places.size(); ++white) {
            Samples samples;
            samples.fill(QByteArray(5, char(128)));
            for (std::size_t i = 0; i < places.size(); ++i)
                samples[std::size_t(places[i][0])][places[i][1]] =
                    white >> i & 1 ? char(255) : '\0';
            for (const bool isGreen : {false, true})
                QVERIFY2(pixel(samples, isGreen) == expected(samples, isGreen),
                         qPrintable(QString::number(white, 2)));
        }
    }

    void fillsRowsOfAnyWidthAndNoMore()
    {
        for (int width = 1; width <= 70; ++width) {
            Samples samples;
            for (int y = 0; y < 5; ++y) {
                for (int x = 0; x < width + 2 * reach; ++x)
                    samples[std::size_t(y)].append(char(37 * x + 91 * y + x * y % 7));
            }
            QByteArray greens;
            for (int x = 0; x < width; ++x)
                greens.append(x % 2 ? char(0xff) : '\0');
            const Colors colors = interpolated(samples, greens);
            for (int x = 0; x < width; ++x) {
                Samples around;
                for (std::size_t y = 0; y < 5; ++y)
                    around[y] = samples[y].mid(x, 5);
                const auto [own, green, other] = expected(around, x % 2);
                QCOMPARE(int(uchar(colors.own[x])), own);
                QCOMPARE(int(uchar(colors.green[x])), green);
                QCOMPARE(int(uchar(colors.other[x])), other);
            }
            for (const QByteArray& row : {colors.own, colors.green, colors.other})
                QCOMPARE(row.mid(width), QByteArray(row.size() - width, untouched));
        }
    }
};

QTEST_APPLESS_MAIN(tst_MosaicLoops)
#include "tst_MosaicLoops.moc"
