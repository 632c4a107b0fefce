#include "SettingsFile.h"
#include "TestMain.h"

#include "TVLLayoutSettings.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

QImage picture()
{
    QImage image(31, 17, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 8, y * 15, x * y % 256, 255 - x));
    }
    return image;
}

QRect availableOnPrimaryScreen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

using StateGetter = QByteArray (TVLLayoutSettings::*)() const;
using StateSetter = void (TVLLayoutSettings::*)(const QByteArray &);
using InspectorGetter = TVL::InspectorMode (TVLLayoutSettings::*)() const;
using InspectorSetter = void (TVLLayoutSettings::*)(TVL::InspectorMode);

} // namespace

Q_DECLARE_METATYPE(StateGetter)
Q_DECLARE_METATYPE(StateSetter)
Q_DECLARE_METATYPE(InspectorGetter)
Q_DECLARE_METATYPE(InspectorSetter)

class TstLayoutSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameIsStored();
    void thePreviewIsStoredAsPng();
    void withoutAPreviewTheImageIsNull_data();
    void withoutAPreviewTheImageIsNull();
    void aNullPreviewReplacesAnother();
    void aSplitterStateIsStored_data();
    void aSplitterStateIsStored();
    void whatTheBinderAffectsIsStored();
    void anInspectorModeIsStored_data();
    void anInspectorModeIsStored();
    void aNumberOfAnotherKindReadsAsZero();

    void aWindowsExtentFitsTheScreen_data();
    void aWindowsExtentFitsTheScreen();
    void theWindowIsInTheMiddle_data();
    void theWindowIsInTheMiddle();
    void noScreenGivesAnEmptyWindow();
    void aLowScreenGivesAMaximizedWindow_data();
    void aLowScreenGivesAMaximizedWindow();

    void theDefaultsFitTheScreen();
    void theWindowIsStored();
    void aSizeWithoutAPositionUsesTheDefaultPosition();
    void aPositionWithoutASizeUsesTheDefaultSize();
    void aPlaceThatNoWindowHasReadsAsTheDefault_data();
    void aPlaceThatNoWindowHasReadsAsTheDefault();
    void maximizedIsStoredWithTheSize();
    void visibilityFlagsAreStored();
};

void TstLayoutSettings::theNameIsStored()
{
    const SettingsFile file;
    {
        TVLLayoutSettings layout(file.path());
        QCOMPARE(layout.name(), QString());
        layout.setName(u"Two \u2014 editors"_s);
        QCOMPARE(layout.name(), u"Two \u2014 editors"_s);
    }
    QCOMPARE(file.content(), iniText(u"layoutName"_s, u"Two \u2014 editors"_s.toUtf8()));
    QCOMPARE(file.open<TVLLayoutSettings>()->name(), u"Two \u2014 editors"_s);
    file.write(iniText(u"layoutName"_s, "@Size(1 2)"));
    QCOMPARE(file.open<TVLLayoutSettings>()->name(), QString());
}

void TstLayoutSettings::thePreviewIsStoredAsPng()
{
    const SettingsFile file;
    TVLLayoutSettings(file.path()).setPreview(picture());

    QBuffer expected;
    QVERIFY(expected.open(QIODevice::WriteOnly));
    QVERIFY(picture().save(&expected, "PNG"));
    const QVariant stored = file.storedValue(u"layoutPreview"_s);
    QCOMPARE(stored.typeId(), int(QMetaType::QByteArray));
    QCOMPARE(stored.toByteArray(), expected.data());
    QVERIFY(stored.toByteArray().startsWith("\x89PNG"));
    QCOMPARE(file.open<TVLLayoutSettings>()->preview(), picture());
}

void TstLayoutSettings::withoutAPreviewTheImageIsNull_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"", "word", "@ByteArray()", "@ByteArray(no picture)",
                             "@ByteArray(\\x89PNG\\r\\n\\x1a\\n)", "@Invalid()", "a, b"})
        QTest::newRow(text) << QByteArray(text);
}

void TstLayoutSettings::withoutAPreviewTheImageIsNull()
{
    QFETCH(QByteArray, text);
    const SettingsFile file;
    QVERIFY(TVLLayoutSettings(file.path()).preview().isNull());
    file.write(iniText(u"layoutPreview"_s, text));
    QVERIFY(file.open<TVLLayoutSettings>()->preview().isNull());
}

void TstLayoutSettings::aNullPreviewReplacesAnother()
{
    const SettingsFile file;
    TVLLayoutSettings(file.path()).setPreview(picture());
    TVLLayoutSettings(file.path()).setPreview(QImage());
    QCOMPARE(file.storedValue(u"layoutPreview"_s), QVariant(QByteArray()));
    QVERIFY(file.open<TVLLayoutSettings>()->preview().isNull());
}

void TstLayoutSettings::aSplitterStateIsStored_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<StateGetter>("state");
    QTest::addColumn<StateSetter>("setState");

    QTest::newRow("editors") << u"editorSplitterState"_s
                             << StateGetter(&TVLLayoutSettings::editorSplitterState)
                             << StateSetter(&TVLLayoutSettings::setEditorSplitterState);
    QTest::newRow("inspector") << u"inspectorSplitterState"_s
                               << StateGetter(&TVLLayoutSettings::inspectorSplitterState)
                               << StateSetter(&TVLLayoutSettings::setInspectorSplitterState);
    QTest::newRow("binder") << u"binderSplitterState"_s
                            << StateGetter(&TVLLayoutSettings::binderSplitterState)
                            << StateSetter(&TVLLayoutSettings::setBinderSplitterState);
}

void TstLayoutSettings::aSplitterStateIsStored()
{
    QFETCH(QString, key);
    QFETCH(StateGetter, state);
    QFETCH(StateSetter, setState);
    const QByteArray bytes("\0\0\0\xff, \"state\")", 15);
    const SettingsFile file;
    {
        TVLLayoutSettings layout(file.path());
        QCOMPARE((layout.*state)(), QByteArray());
        (layout.*setState)(bytes);
        QCOMPARE((layout.*state)(), bytes);
        QCOMPARE(layout.allKeys(), QStringList(key));
    }
    QCOMPARE(file.storedValue(key), QVariant(bytes));
    QCOMPARE((*file.open<TVLLayoutSettings>().*state)(), bytes);
    file.write(iniText(key, "word"));
    QCOMPARE((*file.open<TVLLayoutSettings>().*state)(), QByteArray());
}

void TstLayoutSettings::whatTheBinderAffectsIsStored()
{
    const SettingsFile file;
    {
        TVLLayoutSettings layout(file.path());
        QCOMPARE(int(layout.binderAffectsType()), 0);
        layout.setBinderAffectsType(TVL::AffectType(3));
        QCOMPARE(int(layout.binderAffectsType()), 3);
    }
    QCOMPARE(file.content(), iniText(u"binderAffects"_s, "3"));
    QCOMPARE(int(file.open<TVLLayoutSettings>()->binderAffectsType()), 3);
}

void TstLayoutSettings::anInspectorModeIsStored_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<InspectorGetter>("mode");
    QTest::addColumn<InspectorSetter>("setMode");

    QTest::newRow("shown") << u"inspectorMode"_s
                           << InspectorGetter(&TVLLayoutSettings::inspectorMode)
                           << InspectorSetter(&TVLLayoutSettings::setInspectorMode);
    QTest::newRow("chosen") << u"inspectorModeUserSelected"_s
                            << InspectorGetter(&TVLLayoutSettings::userSelectedInspectorMode)
                            << InspectorSetter(&TVLLayoutSettings::setUserSelectedInspectorMode);
}

void TstLayoutSettings::anInspectorModeIsStored()
{
    QFETCH(QString, key);
    QFETCH(InspectorGetter, mode);
    QFETCH(InspectorSetter, setMode);
    const SettingsFile file;
    {
        TVLLayoutSettings layout(file.path());
        QCOMPARE(int((layout.*mode)()), 0);
        (layout.*setMode)(TVL::InspectorMode(5));
        QCOMPARE(int((layout.*mode)()), 5);
    }
    QCOMPARE(file.content(), iniText(key, "5"));
    QCOMPARE(int((*file.open<TVLLayoutSettings>().*mode)()), 5);
}

void TstLayoutSettings::aNumberOfAnotherKindReadsAsZero()
{
    for (const QByteArray &text :
         {QByteArray("word"), QByteArray("1.5"), QByteArray("@Invalid()"), QByteArray("1, 2")}) {
        const SettingsFile file;
        file.write("[General]\nbinderAffects=" + text + "\ninspectorMode=" + text
                   + "\ninspectorModeUserSelected=" + text + '\n');
        const TVLLayoutSettings layout(file.path());
        QCOMPARE(int(layout.binderAffectsType()), 0);
        QCOMPARE(int(layout.inspectorMode()), 0);
        QCOMPARE(int(layout.userSelectedInspectorMode()), 0);
    }
}

void TstLayoutSettings::aWindowsExtentFitsTheScreen_data()
{
    QTest::addColumn<QSize>("available");
    QTest::addColumn<QSize>("window");

    // Three quarters while width less 1 is below 1500 and height less 1 below 900, then half.
    QTest::newRow("width below its limit") << QSize(1500, 400) << QSize(1125, 300);
    QTest::newRow("width at its limit") << QSize(1501, 400) << QSize(750, 300);
    QTest::newRow("width above its limit") << QSize(1502, 400) << QSize(751, 300);
    QTest::newRow("height below its limit") << QSize(400, 900) << QSize(300, 675);
    QTest::newRow("height at its limit") << QSize(400, 901) << QSize(300, 450);
    QTest::newRow("height above its limit") << QSize(400, 902) << QSize(300, 451);
    QTest::newRow("nothing left over") << QSize(800, 600) << QSize(600, 450);
    QTest::newRow("one quarter left over") << QSize(801, 603) << QSize(600, 452);
    QTest::newRow("two quarters left over") << QSize(802, 602) << QSize(601, 451);
    QTest::newRow("three quarters left over") << QSize(803, 601) << QSize(602, 450);
    QTest::newRow("halves left over") << QSize(1921, 1081) << QSize(960, 540);
    QTest::newRow("large") << QSize(3840, 2160) << QSize(1920, 1080);
    QTest::newRow("tiny") << QSize(1, 1) << QSize(0, 0);
    QTest::newRow("two") << QSize(2, 2) << QSize(1, 1);
}

void TstLayoutSettings::aWindowsExtentFitsTheScreen()
{
    QFETCH(QSize, available);
    QTEST(TVLLayoutSettings::defaultMainWindowGeometry(QRect(QPoint(0, 0), available)).size(),
          "window");
}

void TstLayoutSettings::theWindowIsInTheMiddle_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("window");

    QTest::newRow("at the origin") << QRect(0, 0, 800, 600) << QRect(100, 75, 600, 450);
    QTest::newRow("below a task bar") << QRect(0, 40, 800, 600) << QRect(100, 115, 600, 450);
    QTest::newRow("a screen to the right")
        << QRect(1920, 0, 1920, 1080) << QRect(2400, 270, 960, 540);
    QTest::newRow("a screen to the left")
        << QRect(-1280, -200, 1280, 1024) << QRect(-1119, 56, 960, 512);
    QTest::newRow("odd rests") << QRect(0, 0, 801, 603) << QRect(101, 76, 600, 452);
}

void TstLayoutSettings::theWindowIsInTheMiddle()
{
    QFETCH(QRect, available);
    const QRect window = TVLLayoutSettings::defaultMainWindowGeometry(available);
    QTEST(window, "window");
    QVERIFY(available.contains(window));
}

void TstLayoutSettings::noScreenGivesAnEmptyWindow()
{
    QVERIFY(TVLLayoutSettings::defaultMainWindowGeometry(QRect()).isEmpty());
    QVERIFY(TVLLayoutSettings::defaultWindowMaximized(QRect()));
    QCOMPARE(TVLLayoutSettings::defaultVisibilityFlags(QRect()), 61708);
}

void TstLayoutSettings::aLowScreenGivesAMaximizedWindow_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<bool>("isMaximized");
    QTest::addColumn<int>("flags");

    QTest::newRow("699") << QRect(0, 0, 1000, 699) << true << 61708;
    QTest::newRow("700") << QRect(0, 0, 1000, 700) << true << 61708;
    QTest::newRow("701") << QRect(0, 0, 1000, 701) << false << 61806;
    QTest::newRow("702") << QRect(0, 0, 1000, 702) << false << 61806;
    QTest::newRow("700 further down") << QRect(0, 500, 1000, 700) << true << 61708;
    QTest::newRow("701 further up") << QRect(0, -500, 1000, 701) << false << 61806;
    QTest::newRow("narrow") << QRect(0, 0, 300, 701) << false << 61806;
}

void TstLayoutSettings::aLowScreenGivesAMaximizedWindow()
{
    QFETCH(QRect, available);
    QTEST(TVLLayoutSettings::defaultWindowMaximized(available), "isMaximized");
    QTEST(TVLLayoutSettings::defaultVisibilityFlags(available), "flags");
}

void TstLayoutSettings::theDefaultsFitTheScreen()
{
    const SettingsFile file;
    const TVLLayoutSettings layout(file.path());
    const QRect available = availableOnPrimaryScreen();
    QVERIFY(!available.isEmpty());
    const QWidget ofPrimaryScreen;
    for (const QWidget *widget : {static_cast<const QWidget *>(nullptr), &ofPrimaryScreen}) {
        QCOMPARE(TVLLayoutSettings::defaultMainWindowGeometry(widget),
                 TVLLayoutSettings::defaultMainWindowGeometry(available));
        QCOMPARE(layout.windowGeometry(widget),
                 TVLLayoutSettings::defaultMainWindowGeometry(available));
        QCOMPARE(layout.windowMaximized(widget),
                 TVLLayoutSettings::defaultWindowMaximized(available));
        QCOMPARE(layout.visibilityFlags(widget),
                 TVLLayoutSettings::defaultVisibilityFlags(available));
    }
    QVERIFY(!file.exists());
}

void TstLayoutSettings::theWindowIsStored()
{
    const SettingsFile file;
    {
        TVLLayoutSettings layout(file.path());
        layout.setWindowPosition(QPoint(-50, 60));
        layout.setWindowSize(QSize(700, 800), false);
        QCOMPARE(layout.windowGeometry(nullptr), QRect(-50, 60, 700, 800));
    }
    QCOMPARE(file.content(),
             QByteArray("[General]\nwindowMaximized=false\nwindowPosition=@Point(-50 60)\n"
                        "windowSize=@Size(700 800)\n"));
    QCOMPARE(file.open<TVLLayoutSettings>()->windowGeometry(nullptr), QRect(-50, 60, 700, 800));
}

void TstLayoutSettings::aSizeWithoutAPositionUsesTheDefaultPosition()
{
    const SettingsFile file;
    TVLLayoutSettings layout(file.path());
    layout.setWindowSize(QSize(123, 45), false);
    QVERIFY(!layout.contains(u"windowPosition"_s));
    const QRect fallback = TVLLayoutSettings::defaultMainWindowGeometry(nullptr);
    QCOMPARE(layout.windowGeometry(nullptr), QRect(fallback.topLeft(), QSize(123, 45)));
}

void TstLayoutSettings::aPositionWithoutASizeUsesTheDefaultSize()
{
    const SettingsFile file;
    TVLLayoutSettings layout(file.path());
    layout.setWindowPosition(QPoint(12, 34));
    QVERIFY(!layout.contains(u"windowSize"_s));
    QVERIFY(!layout.contains(u"windowMaximized"_s));
    const QRect fallback = TVLLayoutSettings::defaultMainWindowGeometry(nullptr);
    QCOMPARE(layout.windowGeometry(nullptr), QRect(QPoint(12, 34), fallback.size()));
}

void TstLayoutSettings::aPlaceThatNoWindowHasReadsAsTheDefault_data()
{
    QTest::addColumn<QByteArray>("position");
    QTest::addColumn<QByteArray>("size");

    QTest::newRow("texts") << QByteArray("left") << QByteArray("large");
    QTest::newRow("lists") << QByteArray("1, 2") << QByteArray("3, 4");
    QTest::newRow("exchanged") << QByteArray("@Size(1 2)") << QByteArray("@Point(3 4)");
    QTest::newRow("invalid") << QByteArray("@Invalid()") << QByteArray("@Invalid()");
    QTest::newRow("too short") << QByteArray("@Point(1)") << QByteArray("@Size(1)");
    QTest::newRow("far away") << QByteArray("@Point(2147483647 0)") << QByteArray("@Size(-1 5)");
    QTest::newRow("far off") << QByteArray("@Point(0 -2147483648)")
                             << QByteArray("@Size(5 2147483647)");
}

void TstLayoutSettings::aPlaceThatNoWindowHasReadsAsTheDefault()
{
    QFETCH(QByteArray, position);
    QFETCH(QByteArray, size);
    const SettingsFile file;
    file.write("[General]\nwindowPosition=" + position + "\nwindowSize=" + size
               + "\nwindowMaximized=yes, no\nvisibilityFlags=all\n");
    const TVLLayoutSettings layout(file.path());
    const QRect available = availableOnPrimaryScreen();
    QCOMPARE(layout.windowGeometry(nullptr),
             TVLLayoutSettings::defaultMainWindowGeometry(available));
    QCOMPARE(layout.windowMaximized(nullptr), TVLLayoutSettings::defaultWindowMaximized(available));
    QCOMPARE(layout.visibilityFlags(nullptr), TVLLayoutSettings::defaultVisibilityFlags(available));
}

void TstLayoutSettings::maximizedIsStoredWithTheSize()
{
    const SettingsFile file;
    for (const bool isMaximized : {true, false, true}) {
        TVLLayoutSettings(file.path()).setWindowSize(QSize(700, 800), isMaximized);
        QCOMPARE(file.storedValue(u"windowMaximized"_s).toBool(), isMaximized);
        const auto layout = file.open<TVLLayoutSettings>();
        QCOMPARE(layout->windowMaximized(nullptr), isMaximized);
        QCOMPARE(layout->windowGeometry(nullptr).size(), QSize(700, 800));
    }
}

void TstLayoutSettings::visibilityFlagsAreStored()
{
    for (const int flags : {0, 1, 61708, 61806, -1}) {
        const SettingsFile file;
        TVLLayoutSettings(file.path()).setVisibilityFlags(flags);
        QCOMPARE(file.content(), iniText(u"visibilityFlags"_s, QByteArray::number(flags)));
        QCOMPARE(file.open<TVLLayoutSettings>()->visibilityFlags(nullptr), flags);
    }
}

TVL_TEST(TstLayoutSettings)

#include "tst_layoutsettings.moc"
