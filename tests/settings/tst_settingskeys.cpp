#include "SettingsFile.h"
#include "TestMain.h"

#include "TVLProjectSettings.h"

#include <QMetaEnum>
#include <QTest>

#include <algorithm>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;

using S = TVLSettings;

namespace {

/** The class that has a key for a setting; a project has those of its layout as well. */
enum Owner {
    Project,
    Layout,
};

/** One row of a table of settings. */
template <typename Value>
struct Row
{
    int number;
    Owner owner;
    const char *key;
    Value defaultValue;
};

const QList<Row<bool>> &flagRows()
{
    static const QList<Row<bool>> rows = {
        {88, Project, "Compile/addFrontMatter", false},
        {89, Layout, "IndexCard/ShowLabelMark", true},
        {90, Layout, "IndexCard/ShowStatusStamp", true},
        {91, Layout, "IndexCard/ShowKeywordColors", false},
        {92, Layout, "IndexCard/TintIndexCard", false},
        {93, Layout, "Appearance/TintBinderItems", false},
        {94, Layout, "Appearance/TintBinderIcons", false},
        {95, Layout, "Outliner/TintOutlinerItems", false},
        {96, Layout, "IndexCard/SmallFont", false},
        {97, Layout, "IndexCard/SizeToEditor", false},
        {98, Project, "Statistics/included", true},
        {99, Project, "Statistics/excluded", false},
        {100, Project, "Statistics/annotations", false},
        {101, Project, "Statistics/footnotes", true},
        {102, Project, "Statistics/subDocuments", true},
        {103, Project, "TypewriterScrolling/first", false},
        {104, Project, "TypewriterScrolling/second", false},
        {105, Project, "TypewriterScrolling/full", true},
        {106, Layout, "Layout/SaveCorkAndOutline", false},
        {107, Layout, "Layout/SaveMetaAppearance", false},
        {108, Project, "ghostNotesEnabled", false},
        {109, Project, "showInvisibles", false},
        {110, Project, "excludeFromAutomaticBackups", false},
    };
    return rows;
}

const QList<Row<int>> &intRows()
{
    static const QList<Row<int>> rows = {
        {15, Project, "Inspector/mode", 0},
        {16, Project, "Inspector/projectNoteId", -1},
        {34, Project, "Compile/FrontMatterId", -1},
        {35, Project, "Compile/Format", 4},
        {36, Layout, "IndexCard/Spacing", 0},
        {37, Layout, "IndexCard/Ratio", 3},
        {38, Layout, "IndexCard/Size", 220},
        {39, Layout, "IndexCard/KeywordChips", 0},
        {40, Layout, "Corkboard/cardsAcross", 0},
        {41, Project, "Statistics/pageCountType", 0},
        {42, Project, "Statistics/pageCountTarget", 350},
        {43, Project, "firstEditorZoomIndex", 9},
        {44, Project, "secondEditorZoomIndex", 9},
        {45, Project, "fullScreenZoomIndex", 9},
        {46, Project, "lockEditorPane", 0},
        {47, Project, "firstEditorMode", 0},
        {48, Project, "secondEditorMode", 0},
        {49, Project, "groupMode", 2},
        {50, Project, "secondGroupMode", 2},
    };
    return rows;
}

const QList<Row<QList<int>>> &intListRows()
{
    static const QList<Row<QList<int>>> rows = {
        {0, Project, "firstEditorSource", {3}},
        {1, Project, "secondEditorSource", {3}},
        {2, Project, "expandedBinderItems", {0, 1, 2}},
        {3, Project, "Outliner/First/ExpandedItems", {}},
        {4, Project, "Outliner/Second/ExpandedItems", {}},
        {5, Layout, "Outliner/First/ColumnWidths", {200, 150, 100, 100}},
        {6, Layout, "Outliner/Second/ColumnWidths", {200, 150, 100, 100}},
        {7, Layout, "Outliner/First/VisibleColumns", {0, 1, 2, 3}},
        {8, Layout, "Outliner/Second/VisibleColumns", {0, 1, 2, 3}},
    };
    return rows;
}

const QList<Row<QString>> &stringRows()
{
    static const QList<Row<QString>> rows = {{48, Project, "Compile/ContentRoot", u"-1"_s}};
    return rows;
}

const QList<Row<QStringList>> &stringListRows()
{
    static const QList<Row<QStringList>> rows = {{0, Project, "AutoCorrection/projectWords", {}}};
    return rows;
}

const QList<Row<QByteArray>> &byteArrayRows()
{
    static const QList<Row<QByteArray>> rows = {
        {0, Project, "Replacements/project", {}},
        {1, Project, "Corkboard/FreeformPositions", {}},
    };
    return rows;
}

template <typename Value>
void addRows(const QList<Row<Value>> &rows)
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isOfLayout");
    QTest::addColumn<QString>("key");
    QTest::addColumn<Value>("defaultValue");
    for (const Row<Value> &row : rows) {
        QTest::newRow(row.key) << row.number << (row.owner == Layout)
                               << QString::fromLatin1(row.key) << row.defaultValue;
    }
}

/** A setting of the current row of test data, with another value than its default. */
template <typename Setting, typename Value>
class TestedSetting
{
public:
    TestedSetting(Value otherValue, QByteArray storedText)
        : mOtherValue(std::move(otherValue))
        , mStoredText(std::move(storedText))
    {
        QFETCH(int, number);
        QFETCH(bool, isOfLayout);
        QFETCH(QString, key);
        QFETCH(Value, defaultValue);
        mSetting = Setting(number);
        mIsOfLayout = isOfLayout;
        mKey = key;
        mDefaultValue = defaultValue;
    }

    void hasKeyAndDefault() const
    {
        const SettingsFile file;
        const TVLProjectSettings project(file.path());
        QCOMPARE(project.keyText(mSetting), mKey);
        QCOMPARE(project.defaultValue(mSetting), mDefaultValue);
        QCOMPARE(project.value(mSetting), mDefaultValue);
        QVERIFY(mOtherValue != mDefaultValue);
        const TVLLayoutSettings layout(file.path());
        QCOMPARE(layout.keyText(mSetting), mIsOfLayout ? mKey : QString());
        if (mIsOfLayout)
            QCOMPARE(layout.defaultValue(mSetting), mDefaultValue);
        QCOMPARE(layout.value(mSetting), layout.defaultValue(mSetting));
        QVERIFY(!file.exists());
    }

    template <typename Settings>
    void isStored() const
    {
        const SettingsFile file;
        {
            Settings settings(file.path());
            settings.setValue(mSetting, mOtherValue);
            QCOMPARE(settings.value(mSetting), mOtherValue);
        }
        QCOMPARE(file.content(), iniText(mKey, mStoredText));
        QVERIFY(file.storedValue(mKey).isValid());
        QCOMPARE(file.open<Settings>()->value(mSetting), mOtherValue);

        Settings(file.path()).setValue(mSetting, mDefaultValue);
        const auto settings = file.open<Settings>();
        QVERIFY(settings->contains(mKey));
        QCOMPARE(settings->value(mSetting), mDefaultValue);
    }

    void isNotStoredByTheLayout() const
    {
        const SettingsFile file;
        {
            TVLLayoutSettings settings(file.path());
            settings.setValue(mSetting, mOtherValue);
            QCOMPARE(settings.value(mSetting), settings.defaultValue(mSetting));
        }
        QVERIFY(!file.exists());
        // Nor read, where the file has it.
        file.write(iniText(mKey, mStoredText));
        const TVLLayoutSettings settings(file.path());
        QCOMPARE(settings.value(mSetting), settings.defaultValue(mSetting));
    }

    void readsAsDefaultOver(const QList<QByteArray> &texts) const
    {
        for (const QByteArray &text : texts) {
            const SettingsFile file;
            file.write(iniText(mKey, text));
            QVERIFY2(TVLProjectSettings(file.path()).value(mSetting) == mDefaultValue, text);
            if (mIsOfLayout)
                QVERIFY2(TVLLayoutSettings(file.path()).value(mSetting) == mDefaultValue, text);
        }
    }

    /** All of it. */
    void check(const QList<QByteArray> &otherKinds) const
    {
        hasKeyAndDefault();
        isStored<TVLProjectSettings>();
        if (mIsOfLayout)
            isStored<TVLLayoutSettings>();
        else
            isNotStoredByTheLayout();
        readsAsDefaultOver(otherKinds);
    }

private:
    Setting mSetting;
    bool mIsOfLayout;
    QString mKey;
    Value mDefaultValue;
    Value mOtherValue;
    QByteArray mStoredText;
};

/** Whether an enumeration names the settings of a table and no other. */
template <typename Setting, typename Value>
bool namesExactly(const QList<Row<Value>> &rows)
{
    std::set<int> numbers;
    for (const Row<Value> &row : rows)
        numbers.insert(row.number);
    std::set<int> named;
    const QMetaEnum names = QMetaEnum::fromType<Setting>();
    for (int i = 0; i < names.keyCount(); ++i)
        named.insert(names.value(i));
    return named == numbers && names.keyCount() == rows.size();
}

/** Whether no number beyond those of a table has a key, or another default than @p neutral. */
template <typename Setting, typename Value>
bool knowsNoOther(const QList<Row<Value>> &rows, const Value &neutral)
{
    const SettingsFile file;
    const TVLProjectSettings project(file.path());
    const TVLLayoutSettings layout(file.path());
    for (int number = -2; number <= 300; ++number) {
        const Setting setting = Setting(number);
        const auto isHere = [=](const Row<Value> &row) { return row.number == number; };
        if (std::any_of(rows.begin(), rows.end(), isHere))
            continue;
        if (!project.keyText(setting).isEmpty() || !layout.keyText(setting).isEmpty()
            || project.defaultValue(setting) != neutral || layout.defaultValue(setting) != neutral)
            return false;
    }
    return true;
}

} // namespace

class TstSettingsKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingIsTested();
    void noOtherNumberHasAKey();

    void flags_data() { addRows(flagRows()); }
    void flags();
    void flagsAreReadAsQSettingsGivesThem_data();
    void flagsAreReadAsQSettingsGivesThem();
    void listsOfNumbersAreReadAsQtStoresThem_data();
    void listsOfNumbersAreReadAsQtStoresThem();
    void numbers_data() { addRows(intRows()); }
    void numbers();
    void listsOfNumbers_data() { addRows(intListRows()); }
    void listsOfNumbers();
    void texts_data() { addRows(stringRows()); }
    void texts();
    void listsOfTexts_data() { addRows(stringListRows()); }
    void listsOfTexts();
    void bytes_data() { addRows(byteArrayRows()); }
    void bytes();

    void aFlagOutsideTheProjectsRangeGoesToTheLayout();
    void theLayoutsDefaultIsTrueOnlyForLabelMarkAndStatusStamp();
    void aListOfNumbersSurvives_data();
    void aListOfNumbersSurvives();
    void theContentRootIsAText();
    void allSettingsLieInOneFile();
};

void TstSettingsKeys::everySettingIsTested()
{
    QVERIFY(namesExactly<S::FlagSetting>(flagRows()));
    QVERIFY(namesExactly<S::IntSetting>(intRows()));
    QVERIFY(namesExactly<S::IntListSetting>(intListRows()));
    QVERIFY(namesExactly<S::StringSetting>(stringRows()));
    QVERIFY(namesExactly<S::StringListSetting>(stringListRows()));
    QVERIFY(namesExactly<S::ByteArraySetting>(byteArrayRows()));
    QCOMPARE(flagRows().size(), 23);
    QCOMPARE(intRows().size(), 19);
    QCOMPARE(intListRows().size(), 9);
}

void TstSettingsKeys::noOtherNumberHasAKey()
{
    QVERIFY(knowsNoOther<S::FlagSetting>(flagRows(), false));
    QVERIFY(knowsNoOther<S::IntSetting>(intRows(), 0));
    QVERIFY(knowsNoOther<S::IntListSetting>(intListRows(), QList<int>()));
    QVERIFY(knowsNoOther<S::StringSetting>(stringRows(), QString()));
    QVERIFY(knowsNoOther<S::StringListSetting>(stringListRows(), QStringList()));
    QVERIFY(knowsNoOther<S::ByteArraySetting>(byteArrayRows(), QByteArray()));
}

void TstSettingsKeys::flags()
{
    QFETCH(bool, defaultValue);
    TestedSetting<S::FlagSetting, bool>(!defaultValue, defaultValue ? "false" : "true")
        .check({"true, false", "@Invalid()", "@ByteArray(true)", "@Size(1 2)", "@Variant(junk)"});
}

void TstSettingsKeys::flagsAreReadAsQSettingsGivesThem_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"true", "false", "TRUE", "False", "1", "\"1\"", "0", "\"0\"", "2",
                             "-1", "yes", "no", "on", "word", ""})
        QTest::newRow(text) << QByteArray(text);
}

void TstSettingsKeys::flagsAreReadAsQSettingsGivesThem()
{
    QFETCH(QByteArray, text);
    for (const Row<bool> &row : flagRows()) {
        const SettingsFile file;
        file.write(iniText(QString::fromLatin1(row.key), text));
        const TVLProjectSettings settings(file.path());
        QCOMPARE(settings.value(S::FlagSetting(row.number)),
                 settings.value(QString::fromLatin1(row.key)).toBool());
    }
}

void TstSettingsKeys::listsOfNumbersAreReadAsQtStoresThem_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("empty list of texts") << QVariant(QStringList()) << QList<int>();
    QTest::newRow("empty list of values") << QVariant(QVariantList()) << QList<int>();
    QTest::newRow("list of texts")
        << QVariant(QStringList({u"7"_s, u"-8"_s})) << QList<int>({7, -8});
    QTest::newRow("list of values") << QVariant(QVariantList({7, -8})) << QList<int>({7, -8});
    QTest::newRow("list of one value") << QVariant(QVariantList() << 7) << QList<int>({7});
    QTest::newRow("list of numbers")
        << QVariant::fromValue(QList<int>({7, -8})) << QList<int>({7, -8});
    QTest::newRow("one number") << QVariant(7) << QList<int>({7});
}

void TstSettingsKeys::listsOfNumbersAreReadAsQtStoresThem()
{
    QFETCH(QVariant, stored);
    QFETCH(QList<int>, expected);
    for (const Row<QList<int>> &row : intListRows()) {
        const SettingsFile file;
        {
            QSettings settings(file.path(), QSettings::IniFormat);
            settings.setValue(QString::fromLatin1(row.key), stored);
            settings.sync();
            QCOMPARE(TVLProjectSettings(file.path()).value(S::IntListSetting(row.number)),
                     expected);
        }
        QCOMPARE(file.open<TVLProjectSettings>()->value(S::IntListSetting(row.number)), expected);
    }
}

void TstSettingsKeys::numbers()
{
    TestedSetting<S::IntSetting, int>(-42, "-42")
        .check({"", "word", "true", "2.5", "99999999999", "1, 2", "@Invalid()", "@ByteArray(1)",
                "@Size(1 2)", "@Variant(junk)"});
}

void TstSettingsKeys::listsOfNumbers()
{
    TestedSetting<S::IntListSetting, QList<int>>({7, -8}, "7, -8")
        .check({"word", "1, x", "true", "1, 2.5", "1:2", "1, 99999999999", "@ByteArray(1)",
                "@Size(1 2)"});
}

void TstSettingsKeys::texts()
{
    TestedSetting<S::StringSetting, QString>(u"12"_s, "12")
        .check({"a, b", "@Invalid()", "@ByteArray(12)", "@Size(1 2)", "@Variant(junk)"});
}

void TstSettingsKeys::listsOfTexts()
{
    TestedSetting<S::StringListSetting, QStringList>({u"a b"_s, u"c"_s}, "a b, c")
        .check({"@Invalid()", "@ByteArray(a)", "@Size(1 2)", "@Variant(junk)"});
}

void TstSettingsKeys::bytes()
{
    TestedSetting<S::ByteArraySetting, QByteArray>("a\0b", "@ByteArray(a)")
        .check({"", "word", "1", "true", "a, b", "@Invalid()", "@Size(1 2)", "@Variant(junk)"});
}

void TstSettingsKeys::aFlagOutsideTheProjectsRangeGoesToTheLayout()
{
    const SettingsFile file;
    {
        TVLProjectSettings project(file.path());
        const TVLLayoutSettings layout(file.path());
        for (int number : {-1, 0, 1, 48, 86, 87, 111, 112, 1000}) {
            const S::FlagSetting flag = S::FlagSetting(number);
            QCOMPARE(project.defaultValue(flag), layout.defaultValue(flag));
            QCOMPARE(project.defaultValue(flag), false);
            project.setValue(flag, true);
            QCOMPARE(project.value(flag), false);
        }
    }
    QVERIFY(!file.exists());
}

void TstSettingsKeys::theLayoutsDefaultIsTrueOnlyForLabelMarkAndStatusStamp()
{
    const SettingsFile file;
    const TVLLayoutSettings layout(file.path());
    // False also for those of a project's own flags that are on by default.
    for (int number = -1; number <= 300; ++number)
        QCOMPARE(layout.defaultValue(S::FlagSetting(number)), number == 89 || number == 90);
}

void TstSettingsKeys::aListOfNumbersSurvives_data()
{
    QTest::addColumn<QList<int>>("numbers");
    QTest::newRow("empty") << QList<int>();
    QTest::newRow("one") << QList<int>({7});
    QTest::newRow("one negative") << QList<int>({-7});
    QTest::newRow("several") << QList<int>({3, -1, 3, 0});
}

void TstSettingsKeys::aListOfNumbersSurvives()
{
    QFETCH(QList<int>, numbers);
    // The first list has a default that isn't empty, the second one that is.
    for (const S::IntListSetting setting :
         {S::ExpandedBinderItems, S::FirstOutlinerExpandedItems}) {
        const SettingsFile file;
        TVLProjectSettings(file.path()).setValue(setting, numbers);
        const auto settings = file.open<TVLProjectSettings>();
        QVERIFY(settings->contains(settings->keyText(setting)));
        QCOMPARE(settings->value(setting), numbers);
    }
}

void TstSettingsKeys::theContentRootIsAText()
{
    const SettingsFile file;
    const QString empty = u""_s;
    TVLProjectSettings(file.path()).setValue(S::CompileContentRoot, empty);
    QCOMPARE(file.open<TVLProjectSettings>()->value(S::CompileContentRoot), empty);
    // The number 48 is another setting among the whole numbers.
    const SettingsFile other;
    TVLProjectSettings(other.path()).setValue(S::SecondEditorMode, 5);
    QCOMPARE(other.open<TVLProjectSettings>()->value(S::CompileContentRoot), u"-1"_s);
}

void TstSettingsKeys::allSettingsLieInOneFile()
{
    const SettingsFile file;
    {
        TVLProjectSettings settings(file.path());
        for (const Row<bool> &row : flagRows())
            settings.setValue(S::FlagSetting(row.number), !row.defaultValue);
        for (const Row<int> &row : intRows())
            settings.setValue(S::IntSetting(row.number), row.number);
        for (const Row<QList<int>> &row : intListRows())
            settings.setValue(S::IntListSetting(row.number), {row.number, -row.number});
    }
    const auto settings = file.open<TVLProjectSettings>();
    QCOMPARE(settings->allKeys().size(), 23 + 19 + 9);
    for (const Row<bool> &row : flagRows())
        QCOMPARE(settings->value(S::FlagSetting(row.number)), !row.defaultValue);
    for (const Row<int> &row : intRows())
        QCOMPARE(settings->value(S::IntSetting(row.number)), row.number);
    for (const Row<QList<int>> &row : intListRows()) {
        QCOMPARE(settings->value(S::IntListSetting(row.number)),
                 QList<int>({row.number, -row.number}));
    }
}

TVL_TEST(TstSettingsKeys)

#include "tst_settingskeys.moc"
