#include "SettingsFile.h"
#include "TestMain.h"

#include "TVLSettings.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <limits>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace {

/** Knows setting 1 of every kind and no other. */
class OneOfEach : public TVLSettings
{
public:
    using TVLSettings::TVLSettings;

    using TVLSettings::defaultValue;
    bool defaultValue(FlagSetting) const override { return true; }
    int defaultValue(IntSetting) const override { return -7; }
    double defaultValue(RealSetting) const override { return 2.5; }
    QString defaultValue(StringSetting) const override { return u"none"_s; }
    QStringList defaultValue(StringListSetting) const override { return {u"a"_s, u"b"_s}; }
    QColor defaultValue(ColorSetting) const override { return Qt::red; }
    QDateTime defaultValue(DateTimeSetting) const override
    {
        return QDateTime(QDate(2001, 2, 3), QTime(4, 5), Qt::UTC);
    }
    QFont defaultValue(FontSetting) const override { return QFont(u"Some Family"_s, 31); }
    QList<int> defaultValue(IntListSetting) const override { return {4, 5}; }
    QByteArray defaultValue(ByteArraySetting) const override { return "bytes"; }
    QTextCharFormat defaultValue(TextCharFormatSetting) const override
    {
        QTextCharFormat format;
        format.setFontItalic(true);
        return format;
    }
    QTextBlockFormat defaultValue(TextBlockFormatSetting) const override
    {
        QTextBlockFormat format;
        format.setIndent(3);
        return format;
    }

    QString keyText(FlagSetting setting) const override { return key(setting, u"Kinds/flag"); }
    QString keyText(IntSetting setting) const override { return key(setting, u"Kinds/int"); }
    QString keyText(RealSetting setting) const override { return key(setting, u"Kinds/real"); }
    QString keyText(StringSetting setting) const override { return key(setting, u"string"); }
    QString keyText(StringListSetting setting) const override
    {
        return key(setting, u"Kinds/strings");
    }
    QString keyText(ColorSetting setting) const override { return key(setting, u"Kinds/color"); }
    QString keyText(DateTimeSetting setting) const override
    {
        return key(setting, u"Kinds/Deeper/date");
    }
    QString keyText(FontSetting setting) const override { return key(setting, u"Kinds/font"); }
    QString keyText(IntListSetting setting) const override { return key(setting, u"Kinds/ints"); }
    QString keyText(ByteArraySetting setting) const override { return key(setting, u"bytes"); }
    QString keyText(TextCharFormatSetting setting) const override
    {
        return key(setting, u"Kinds/characters");
    }
    QString keyText(TextBlockFormatSetting setting) const override
    {
        return key(setting, u"Kinds/paragraphs");
    }

private:
    static QString key(int setting, QStringView known)
    {
        return setting == 1 ? known.toString() : QString();
    }
};

template <typename Setting>
constexpr auto Known = Setting(1);
template <typename Setting>
constexpr auto Unknown = Setting(2);

/** Stores values of one kind and reads each back from memory and from the disk. */
template <typename Setting, typename Value>
bool survives(const QList<Value> &values)
{
    const SettingsFile file;
    for (const Value &value : values) {
        {
            OneOfEach settings(file.path());
            settings.setValue(Known<Setting>, value);
            if (settings.value(Known<Setting>) != value) {
                qWarning() << "in memory:" << value << settings.value(Known<Setting>);
                return false;
            }
        }
        const auto settings = file.open<OneOfEach>();
        if (!settings->contains(settings->keyText(Known<Setting>))
            || settings->value(Known<Setting>) != value) {
            qWarning() << "on the disk:" << value << settings->value(Known<Setting>);
            return false;
        }
    }
    return true;
}

/** Whether a setting reads as its default over a text in the file, and over none. */
template <typename Setting>
bool readsAsDefault(const QByteArray &text)
{
    const SettingsFile file;
    {
        const OneOfEach settings(file.path());
        if (settings.value(Known<Setting>) != settings.defaultValue(Known<Setting>))
            return false;
        file.write(iniText(settings.keyText(Known<Setting>), text));
    }
    const auto settings = file.open<OneOfEach>();
    return settings->contains(settings->keyText(Known<Setting>))
        && settings->value(Known<Setting>) == settings->defaultValue(Known<Setting>);
}

/** Whether a setting without a key is neither stored nor read. */
template <typename Setting, typename Value>
bool isNotStored(const Value &value)
{
    const SettingsFile file;
    {
        OneOfEach settings(file.path());
        settings.setValue(Unknown<Setting>, value);
        if (settings.value(Unknown<Setting>) != settings.defaultValue(Unknown<Setting>))
            return false;
    }
    return !file.exists();
}

} // namespace

class TstSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsAQSettingsInIniForm();
    void theBaseKnowsNoSetting();
    void everyKindSurvives();
    void everyByteSurvives();
    void everyListOfNumbersSurvives();
    void aListOfNumbersIsReadableInTheFile_data();
    void aListOfNumbersIsReadableInTheFile();
    void anEmptyListIsNotAnAbsentOne();
    void aListOfNumbersIsReadInEveryForm_data();
    void aListOfNumbersIsReadInEveryForm();
    void aValueOfAnotherKindReadsAsTheDefault_data();
    void aValueOfAnotherKindReadsAsTheDefault();
    void aFormatOfTheOtherKindReadsAsTheDefault();
    void aDamagedFormatReadsAsTheDefault();
    void aValueReadsTheSameBeforeItIsWritten();
    void aSettingWithoutAKeyIsNotStored();
    void aDefaultIsStored();

    void aKeyWithoutANumberIsReached();
    void anEmptyKeyIsNoKey();
    void removingTakesTheKeyAndAllBelow();
    void aChangeIsWrittenWhenTheEventLoopComesRound();
    void objectsOnOneFileSeeEachOthersChanges();

    void savingToAnotherFileTakesEverythingAlong();
    void savingReplacesWhatTheOtherFileHeld();
    void savingLeavesTheSourceAsItWas();
    void savingToItsOwnFileWritesIt();
    void savingMakesTheFolder();
    void savingWhereNoFileCanBeFails();
    void savingOverADamagedFileKeepsIt();
    void savingNothingMakesAnEmptyFile();
};

void TstSettings::itIsAQSettingsInIniForm()
{
    const SettingsFile file;
    QObject parent;
    const auto *settings = new TVLSettings(file.path(), &parent);
    QCOMPARE(settings->parent(), &parent);
    QCOMPARE(settings->format(), QSettings::IniFormat);
    QCOMPARE(int(settings->format()), 1);
    QCOMPARE(settings->fileName(), file.path());
    QCOMPARE(settings->status(), QSettings::NoError);
    QVERIFY(file.names().isEmpty());
    static_assert(std::is_base_of_v<QSettings, TVLSettings>);
}

void TstSettings::theBaseKnowsNoSetting()
{
    using S = TVLSettings;
    const SettingsFile file;
    {
        S settings(file.path());
        for (int number = -1; number <= 200; ++number) {
            QCOMPARE(settings.keyText(S::FlagSetting(number)), QString());
            QCOMPARE(settings.value(S::FlagSetting(number)), false);
            QCOMPARE(settings.keyText(S::IntSetting(number)), QString());
            QCOMPARE(settings.value(S::IntSetting(number)), 0);
            QCOMPARE(settings.keyText(S::RealSetting(number)), QString());
            QCOMPARE(settings.value(S::RealSetting(number)), 0.0);
            QCOMPARE(settings.keyText(S::StringSetting(number)), QString());
            QCOMPARE(settings.value(S::StringSetting(number)), QString());
            QCOMPARE(settings.keyText(S::StringListSetting(number)), QString());
            QCOMPARE(settings.value(S::StringListSetting(number)), QStringList());
            QCOMPARE(settings.keyText(S::ColorSetting(number)), QString());
            QCOMPARE(settings.value(S::ColorSetting(number)), QColor());
            QCOMPARE(settings.keyText(S::DateTimeSetting(number)), QString());
            QCOMPARE(settings.value(S::DateTimeSetting(number)), QDateTime());
            QCOMPARE(settings.keyText(S::FontSetting(number)), QString());
            QCOMPARE(settings.value(S::FontSetting(number)), QFont());
            QCOMPARE(settings.keyText(S::IntListSetting(number)), QString());
            QCOMPARE(settings.value(S::IntListSetting(number)), QList<int>());
            QCOMPARE(settings.keyText(S::ByteArraySetting(number)), QString());
            QCOMPARE(settings.value(S::ByteArraySetting(number)), QByteArray());
            QCOMPARE(settings.keyText(S::TextCharFormatSetting(number)), QString());
            QVERIFY(settings.value(S::TextCharFormatSetting(number)) == QTextCharFormat());
            QCOMPARE(settings.keyText(S::TextBlockFormatSetting(number)), QString());
            QVERIFY(settings.value(S::TextBlockFormatSetting(number)) == QTextBlockFormat());
            settings.setValue(S::FlagSetting(number), true);
            settings.setValue(S::IntSetting(number), 1);
        }
    }
    QVERIFY(!file.exists());
}

void TstSettings::everyKindSurvives()
{
    using S = TVLSettings;
    QVERIFY((survives<S::FlagSetting, bool>({true, false})));
    QVERIFY((survives<S::IntSetting, int>(
        {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})));
    QVERIFY((survives<S::RealSetting, double>(
        {0, 0.1, -2.5, 1e300, 5e-324, 1.0 / 3, 12345678.9, std::numeric_limits<double>::max()})));
    QVERIFY((survives<S::StringSetting, QString>(
        {u"word"_s, u""_s, u"true"_s, u"12"_s, u"a, b"_s, u"a;b=c#d"_s, u"@Invalid()"_s,
         u"@Size(1 2)"_s, u"@"_s, u"@@a"_s, u"  blanks  "_s, u"line\nend\ttab\r"_s, u"\"quoted\\"_s,
         u"M\u00fcller \u4e2d\u6587 \U0001f4d6"_s, QString(QChar(0)), QString(100000, u'x')})));
    QVERIFY((survives<S::StringListSetting, QStringList>(
        {{},
         {u"one"_s},
         {u""_s},
         {u""_s, u""_s},
         {u"a, b"_s, u"c"_s},
         {u"@Invalid()"_s},
         {u"@a"_s, u"@@"_s},
         {u"M\u00fcller"_s, u"\"x\""_s, u"a\\"_s, u" "_s}})));
    QVERIFY((survives<S::ColorSetting, QColor>(
        {Qt::blue, QColor(1, 2, 3, 4), QColor(), QColor::fromHsv(20, 30, 40)})));
    QVERIFY((survives<S::DateTimeSetting, QDateTime>(
        {QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 999), Qt::UTC),
         QDateTime(QDate(1999, 12, 31), QTime(1, 2, 3)), QDateTime()})));
    QFont font(u"Other Family"_s, 17, QFont::Bold, true);
    font.setUnderline(true);
    QVERIFY((survives<S::FontSetting, QFont>({font, QFont(u"Third Family"_s, 9)})));
    QVERIFY((survives<S::ByteArraySetting, QByteArray>({"x", "", "a, b", ")", "@Invalid()"})));

    // Properties in the order of their numbers: formats compare it too, and the file has no other.
    QTextCharFormat characters;
    characters.setForeground(Qt::green);
    characters.setFontFamilies({u"One Family"_s, u"Another"_s});
    characters.setFontWeight(QFont::Bold);
    characters.setAnchorHref(u"scheme://host"_s);
    QVERIFY((survives<S::TextCharFormatSetting, QTextCharFormat>({characters, {}})));
    QTextBlockFormat paragraphs;
    paragraphs.setAlignment(Qt::AlignRight);
    paragraphs.setTabPositions({QTextOption::Tab(12, QTextOption::RightTab),
                                QTextOption::Tab(20.5, QTextOption::DelimiterTab, u',')});
    paragraphs.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
    QVERIFY((survives<S::TextBlockFormatSetting, QTextBlockFormat>({paragraphs, {}})));
}

void TstSettings::everyByteSurvives()
{
    QByteArray bytes;
    for (int repeat = 0; repeat < 2; ++repeat) {
        for (int byte = 0; byte < 256; ++byte)
            bytes += char(byte);
    }
    QVERIFY((survives<TVLSettings::ByteArraySetting, QByteArray>({bytes})));
    QString units;
    for (char16_t unit = 0; unit < 0xD800; ++unit)
        units += QChar(unit);
    QVERIFY((survives<TVLSettings::StringSetting, QString>({units})));
}

void TstSettings::everyListOfNumbersSurvives()
{
    QList<int> many;
    for (int number = -5000; number < 5000; ++number)
        many += number * 9973;
    QVERIFY((survives<TVLSettings::IntListSetting, QList<int>>(
        {{},
         {0},
         {-1},
         {7},
         {1, 2, 3},
         {-1, -2},
         {5, 5, 5},
         {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()},
         many})));
}

void TstSettings::aListOfNumbersIsReadableInTheFile_data()
{
    QTest::addColumn<QList<int>>("numbers");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QList<int>() << QByteArray("");
    QTest::newRow("one") << QList<int>({3}) << QByteArray("3");
    QTest::newRow("several") << QList<int>({200, -150, 0}) << QByteArray("200, -150, 0");
}

void TstSettings::aListOfNumbersIsReadableInTheFile()
{
    QFETCH(QList<int>, numbers);
    QFETCH(QByteArray, text);
    const SettingsFile file;
    OneOfEach(file.path()).setValue(Known<TVLSettings::IntListSetting>, numbers);
    QCOMPARE(file.content(), iniText(u"Kinds/ints"_s, text));
}

void TstSettings::anEmptyListIsNotAnAbsentOne()
{
    const SettingsFile file;
    {
        OneOfEach settings(file.path());
        QVERIFY(!settings.contains(u"Kinds/ints"_s));
        QCOMPARE(settings.value(Known<TVLSettings::IntListSetting>), QList<int>({4, 5}));
        settings.setValue(Known<TVLSettings::IntListSetting>, {});
        settings.setValue(Known<TVLSettings::StringListSetting>, QStringList());
    }
    const auto settings = file.open<OneOfEach>();
    QVERIFY(settings->contains(u"Kinds/ints"_s));
    QCOMPARE(settings->value(Known<TVLSettings::IntListSetting>), QList<int>());
    QVERIFY(settings->contains(u"Kinds/strings"_s));
    QCOMPARE(settings->value(Known<TVLSettings::StringListSetting>), QStringList());
    settings->remove(u"Kinds/ints"_s);
    QCOMPARE(settings->value(Known<TVLSettings::IntListSetting>), QList<int>({4, 5}));
}

void TstSettings::aListOfNumbersIsReadInEveryForm_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QList<int>>("expected");

    QTest::newRow("no blanks") << QByteArray("1,2,3") << QList<int>({1, 2, 3});
    QTest::newRow("blanks") << QByteArray(" 1 ,  -2 ") << QList<int>({1, -2});
    QTest::newRow("quoted") << QByteArray("\"1\", \"2\"") << QList<int>({1, 2});
    QTest::newRow("plus") << QByteArray("+1, 2") << QList<int>({1, 2});
}

void TstSettings::aListOfNumbersIsReadInEveryForm()
{
    QFETCH(QByteArray, text);
    const SettingsFile file;
    file.write(iniText(u"Kinds/ints"_s, text));
    QTEST(OneOfEach(file.path()).value(Known<TVLSettings::IntListSetting>), "expected");
}

void TstSettings::aValueOfAnotherKindReadsAsTheDefault_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("but");

    // Whatever a text may be the right form of.
    const auto row = [](const char *text, const char *but) {
        QTest::newRow(text) << QByteArray(text) << QByteArray(but);
    };
    row("", "flag string strings ints");
    row("word", "string strings");
    row("true", "flag string strings");
    row("FALSE", "flag string strings");
    row("1", "int real string strings ints");
    row("2.75", "real string strings");
    row("1e3", "real string strings");
    row("99999999999", "real string strings");
    row("nan", "string strings");
    row("inf", "string strings");
    row("1e999", "string strings");
    row("#ff0000", "string strings");
    row("x, y", "strings");
    row("1, y", "strings");
    row("1, 2.5", "strings");
    row("1, 99999999999", "strings");
    row("1, 2", "strings ints");
    row("@Invalid()", "strings ints");
    row("@ByteArray(12)", "bytes");
    row("@ByteArray(true)", "bytes");
    row("@Size(1 2)", "");
    row("@Point(1 2)", "");
    row("@Rect(1 2 3 4)", "");
    row("@Variant(\\0\\0\\0\\x43\\x1\\xff\\xff)", "");
    row("@Variant(junk)", "strings ints");
    row("@Variant()", "strings ints");
    row("@DateTime(junk)", "strings ints");
}

void TstSettings::aValueOfAnotherKindReadsAsTheDefault()
{
    using S = TVLSettings;
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, but);
    const QList<QByteArray> kinds = but.split(' ');
    QCOMPARE(readsAsDefault<S::FlagSetting>(text), !kinds.contains("flag") || text == "true");
    QCOMPARE(readsAsDefault<S::IntSetting>(text), !kinds.contains("int"));
    QCOMPARE(readsAsDefault<S::RealSetting>(text), !kinds.contains("real"));
    QCOMPARE(readsAsDefault<S::StringSetting>(text), !kinds.contains("string"));
    QCOMPARE(readsAsDefault<S::StringListSetting>(text), !kinds.contains("strings"));
    QCOMPARE(readsAsDefault<S::IntListSetting>(text), !kinds.contains("ints"));
    QCOMPARE(readsAsDefault<S::ByteArraySetting>(text), !kinds.contains("bytes"));
    QVERIFY(readsAsDefault<S::DateTimeSetting>(text));
    QVERIFY(readsAsDefault<S::FontSetting>(text));
    QVERIFY(readsAsDefault<S::TextCharFormatSetting>(text));
    QVERIFY(readsAsDefault<S::TextBlockFormatSetting>(text));
    QVERIFY(readsAsDefault<S::ColorSetting>(text) || text.startsWith("@Variant(\\0\\0\\0\\x43"));
}

void TstSettings::aFormatOfTheOtherKindReadsAsTheDefault()
{
    using S = TVLSettings;
    const SettingsFile file;
    OneOfEach settings(file.path());
    settings.setValue(Known<S::TextCharFormatSetting>, QTextCharFormat());
    settings.setValue(Known<S::TextBlockFormatSetting>, QTextBlockFormat());
    const QString characters = settings.keyText(Known<S::TextCharFormatSetting>);
    const QString paragraphs = settings.keyText(Known<S::TextBlockFormatSetting>);
    const QVariant ofCharacters = settings.value(characters);
    settings.setValue(characters, settings.value(paragraphs));
    settings.setValue(paragraphs, ofCharacters);
    QCOMPARE(settings.value(Known<S::TextCharFormatSetting>),
             settings.defaultValue(Known<S::TextCharFormatSetting>));
    QCOMPARE(settings.value(Known<S::TextBlockFormatSetting>),
             settings.defaultValue(Known<S::TextBlockFormatSetting>));
}

void TstSettings::aDamagedFormatReadsAsTheDefault()
{
    constexpr auto Setting = Known<TVLSettings::TextBlockFormatSetting>;
    const SettingsFile file;
    OneOfEach settings(file.path());
    QTextBlockFormat format;
    format.setTabPositions({QTextOption::Tab(12, QTextOption::RightTab)});
    settings.setValue(Setting, format);
    QCOMPARE(settings.value(Setting), format);
    const QString key = settings.keyText(Setting);
    const QByteArray whole = settings.value(key).toByteArray();
    for (int size = 0; size < whole.size(); ++size) {
        settings.setValue(key, whole.first(size));
        QCOMPARE(settings.value(Setting), settings.defaultValue(Setting));
    }
    settings.setValue(key, whole + '\0');
    QCOMPARE(settings.value(Setting), settings.defaultValue(Setting));
    for (int position = 0; position < whole.size(); ++position) {
        QByteArray wrong = whole;
        wrong[position] = char(~wrong[position]);
        settings.setValue(key, wrong);
        QCOMPARE(settings.value(Setting), settings.defaultValue(Setting));
    }
}

void TstSettings::aValueReadsTheSameBeforeItIsWritten()
{
    using S = TVLSettings;
    const QVariant values[] = {u"7"_s,
                               7,
                               qlonglong(7),
                               7.5,
                               true,
                               QStringList{u"7"_s},
                               QStringList{u"7"_s, u"8"_s},
                               QStringList(),
                               QVariantList{7, 8},
                               QVariantList(),
                               QByteArray("7"),
                               QFont(u"Third Family"_s),
                               QVariant(),
                               QTextBlockFormat(),
                               QSize(7, 8)};
    const SettingsFile file;
    for (const QVariant &value : values) {
        OneOfEach settings(file.path());
        const QString keys[] = {settings.keyText(Known<S::FlagSetting>),
                                settings.keyText(Known<S::IntSetting>),
                                settings.keyText(Known<S::RealSetting>),
                                settings.keyText(Known<S::StringSetting>),
                                settings.keyText(Known<S::StringListSetting>),
                                settings.keyText(Known<S::FontSetting>),
                                settings.keyText(Known<S::IntListSetting>),
                                settings.keyText(Known<S::ByteArraySetting>),
                                settings.keyText(Known<S::TextCharFormatSetting>),
                                settings.keyText(Known<S::TextBlockFormatSetting>)};
        for (const QString &key : keys)
            settings.setValue(key, value);
        settings.sync();
        const auto written = file.open<OneOfEach>();
        const auto isSameIn = [&](auto setting) {
            return settings.value(setting) == written->value(setting);
        };
        QVERIFY2(isSameIn(Known<S::FlagSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::IntSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::RealSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::StringSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::StringListSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::FontSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::IntListSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::ByteArraySetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::TextCharFormatSetting>), value.typeName());
        QVERIFY2(isSameIn(Known<S::TextBlockFormatSetting>), value.typeName());
    }
}

void TstSettings::aSettingWithoutAKeyIsNotStored()
{
    using S = TVLSettings;
    QVERIFY(isNotStored<S::FlagSetting>(false));
    QVERIFY(isNotStored<S::IntSetting>(1));
    QVERIFY(isNotStored<S::RealSetting>(1.5));
    QVERIFY(isNotStored<S::StringSetting>(u"x"_s));
    QVERIFY(isNotStored<S::StringListSetting>(QStringList(u"x"_s)));
    QVERIFY(isNotStored<S::ColorSetting>(QColor(Qt::blue)));
    QVERIFY(isNotStored<S::DateTimeSetting>(QDateTime::currentDateTimeUtc()));
    QVERIFY(isNotStored<S::FontSetting>(QFont()));
    QVERIFY(isNotStored<S::IntListSetting>(QList<int>({1})));
    QVERIFY(isNotStored<S::ByteArraySetting>(QByteArray("x")));
    QVERIFY(isNotStored<S::TextCharFormatSetting>(QTextCharFormat()));
    QVERIFY(isNotStored<S::TextBlockFormatSetting>(QTextBlockFormat()));
}

void TstSettings::aDefaultIsStored()
{
    const SettingsFile file;
    OneOfEach(file.path()).setValue(Known<TVLSettings::IntSetting>, -7);
    QCOMPARE(file.content(), iniText(u"Kinds/int"_s, "-7"));
}

void TstSettings::aKeyWithoutANumberIsReached()
{
    const SettingsFile file;
    {
        TVLSettings settings(file.path());
        QVERIFY(!settings.value(u"Some/key"_s).isValid());
        QCOMPARE(settings.value(u"Some/key"_s, 5), QVariant(5));
        settings.setValue(u"Some/key"_s, u"text"_s);
        QVERIFY(settings.contains(u"Some/key"_s));
        QCOMPARE(settings.value(u"Some/key"_s, 5), QVariant(u"text"_s));
    }
    QCOMPARE(file.content(), iniText(u"Some/key"_s, "text"));
}

void TstSettings::anEmptyKeyIsNoKey()
{
    const SettingsFile file;
    file.write(iniText(u"Some/key"_s, "1"));
    {
        TVLSettings settings(file.path());
        settings.setValue(QString(), 1);
        QVERIFY(!settings.contains(QString()));
        // An ordinary QSettings would be empty now.
        settings.remove(QString());
        settings.remove(settings.keyText(TVLSettings::FlagSetting(1)));
        QCOMPARE(settings.allKeys(), QStringList(u"Some/key"_s));
    }
    QCOMPARE(file.content(), iniText(u"Some/key"_s, "1"));
}

void TstSettings::removingTakesTheKeyAndAllBelow()
{
    const SettingsFile file;
    file.write("[Some]\nkey=1\nkeyRing=2\nkey\\deeper=3\n");
    {
        TVLSettings settings(file.path());
        settings.remove(u"Some/key"_s);
        settings.remove(u"Some/unknown"_s);
    }
    QCOMPARE(file.content(), iniText(u"Some/keyRing"_s, "2"));
    TVLSettings(file.path()).clear();
    QCOMPARE(file.content(), QByteArray());
}

void TstSettings::aChangeIsWrittenWhenTheEventLoopComesRound()
{
    const SettingsFile file;
    OneOfEach settings(file.path());
    settings.setValue(Known<TVLSettings::IntSetting>, 1);
    settings.setValue(Known<TVLSettings::IntSetting>, 2);
    QVERIFY(!file.exists());
    QTRY_COMPARE(file.content(), iniText(u"Kinds/int"_s, "2"));
}

void TstSettings::objectsOnOneFileSeeEachOthersChanges()
{
    const SettingsFile file;
    OneOfEach first(file.path());
    const OneOfEach second(file.path());
    first.setValue(Known<TVLSettings::IntSetting>, 1);
    QCOMPARE(second.value(Known<TVLSettings::IntSetting>), 1);
}

void TstSettings::savingToAnotherFileTakesEverythingAlong()
{
    using S = TVLSettings;
    const SettingsFile source;
    const SettingsFile target;
    source.write("[%General]\nkey=general\n[A%20b]\nc%2Fd=1\n[General]\nloner=x\n");
    OneOfEach settings(source.path());
    settings.setValue(Known<S::FlagSetting>, false);
    settings.setValue(Known<S::StringSetting>, u"M\u00fcller, @"_s);
    settings.setValue(Known<S::StringListSetting>, QStringList{u"@a"_s, u""_s});
    settings.setValue(Known<S::IntListSetting>, {});
    settings.setValue(Known<S::ByteArraySetting>, QByteArray("\0\xff,", 3));
    settings.setValue(Known<S::DateTimeSetting>, QDateTime(QDate(2020, 1, 2), QTime(), Qt::UTC));
    settings.setValue(Known<S::FontSetting>, QFont(u"Other Family"_s));
    settings.setValue(u"window"_s, QSize(1, 2));

    // Nothing of it is on the disk yet.
    QVERIFY(settings.saveToFile(target.path()));
    settings.sync();
    QCOMPARE(target.content(), source.content());
    const auto saved = target.open<OneOfEach>();
    QCOMPARE(saved->allKeys(), settings.allKeys());
    QCOMPARE(saved->value(u"General/key"_s), QVariant(u"general"_s));
    QCOMPARE(saved->value(Known<S::FlagSetting>), false);
    QCOMPARE(saved->value(Known<S::IntListSetting>), QList<int>());
    QCOMPARE(saved->value(Known<S::FontSetting>), QFont(u"Other Family"_s));
    QCOMPARE(target.names(), QStringList(u"ui.ini"_s));
}

void TstSettings::savingReplacesWhatTheOtherFileHeld()
{
    const SettingsFile source;
    const SettingsFile target;
    target.write("[Kinds]\nint=99\nflag=false\n[Old]\nkey=1\n");
    OneOfEach settings(source.path());
    settings.setValue(Known<TVLSettings::IntSetting>, 3);
    QVERIFY(settings.saveToFile(target.path()));
    QCOMPARE(target.content(), iniText(u"Kinds/int"_s, "3"));
    // Also for those who had the other file open.
    QCOMPARE(OneOfEach(target.path()).value(Known<TVLSettings::FlagSetting>), true);
}

void TstSettings::savingLeavesTheSourceAsItWas()
{
    const SettingsFile source;
    const SettingsFile target;
    source.write(iniText(u"Kinds/int"_s, "3"));
    OneOfEach settings(source.path());
    QVERIFY(settings.saveToFile(target.path()));
    OneOfEach(target.path()).setValue(Known<TVLSettings::IntSetting>, 4);
    QCOMPARE(settings.value(Known<TVLSettings::IntSetting>), 3);
    QCOMPARE(settings.fileName(), source.path());
    QCOMPARE(source.content(), iniText(u"Kinds/int"_s, "3"));
    QCOMPARE(target.content(), iniText(u"Kinds/int"_s, "4"));
}

void TstSettings::savingToItsOwnFileWritesIt()
{
    const SettingsFile file;
    file.write("[Kinds]\nflag=false\nints=1, 2\n");
    OneOfEach settings(file.path());
    settings.remove(u"Kinds/flag"_s);
    settings.setValue(Known<TVLSettings::IntSetting>, 3);
    QVERIFY(settings.saveToFile(file.path()));
    QCOMPARE(file.content(), QByteArray("[Kinds]\nint=3\nints=1, 2\n"));
    QCOMPARE(settings.value(Known<TVLSettings::IntSetting>), 3);
    QCOMPARE(settings.value(Known<TVLSettings::IntListSetting>), QList<int>({1, 2}));
}

void TstSettings::savingMakesTheFolder()
{
    const SettingsFile source;
    const SettingsFile target(u"New/Settings/ui.ini"_s);
    OneOfEach settings(source.path());
    settings.setValue(Known<TVLSettings::IntSetting>, 3);
    QVERIFY(settings.saveToFile(target.path()));
    QCOMPARE(target.content(), iniText(u"Kinds/int"_s, "3"));
}

void TstSettings::savingWhereNoFileCanBeFails()
{
    const SettingsFile source;
    source.write(iniText(u"Kinds/int"_s, "3"));
    OneOfEach settings(source.path());

    const SettingsFile file;
    file.write("a file");
    QVERIFY(!settings.saveToFile(file.path() + u"/ui.ini"_s));
    QCOMPARE(file.content(), QByteArray("a file"));

    const SettingsFile folder;
    QVERIFY(QDir().mkpath(folder.path()));
    QVERIFY(!settings.saveToFile(folder.path()));
    QVERIFY(QDir(folder.path()).isEmpty());

    QCOMPARE(settings.value(Known<TVLSettings::IntSetting>), 3);
    settings.setValue(Known<TVLSettings::IntSetting>, 4);
    settings.sync();
    QCOMPARE(settings.status(), QSettings::NoError);
    QCOMPARE(source.content(), iniText(u"Kinds/int"_s, "4"));
}

void TstSettings::savingOverADamagedFileKeepsIt()
{
    const SettingsFile source;
    OneOfEach settings(source.path());
    settings.setValue(Known<TVLSettings::IntSetting>, 3);
    for (const QByteArray &damaged :
         {QByteArray("[Kinds\nwords of a writer\n"), QByteArray("[Kinds]\na=1\nno value\n"),
          QByteArray("[Kinds]\na=\xe4\n")}) {
        const SettingsFile target;
        target.write(damaged);
        QVERIFY(settings.saveToFile(target.path()));
        QCOMPARE(target.content(), iniText(u"Kinds/int"_s, "3"));
        QCOMPARE(target.names(), QStringList({u"ui.ini"_s, u"ui.ini.damaged"_s}));
        QFile kept(target.pathBeside(u"ui.ini.damaged"_s));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), damaged);
    }
}

void TstSettings::savingNothingMakesAnEmptyFile()
{
    const SettingsFile source;
    const SettingsFile target;
    target.write(iniText(u"Kinds/int"_s, "3"));
    QVERIFY(OneOfEach(source.path()).saveToFile(target.path()));
    QCOMPARE(target.content(), QByteArray());
}

TVL_TEST(TstSettings)

#include "tst_settings.moc"
