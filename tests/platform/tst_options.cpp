#include "TestMain.h"

#include "TVLOptions.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMetaEnum>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(TVLOptions::Flag)
Q_DECLARE_METATYPE(TVLOptions::Int)
Q_DECLARE_METATYPE(TVLOptions::Font)

namespace {

using Batch = TVLOptions::ChangeBatch;

/** The groups of every signal that a spy has seen, and forgets them. */
QList<QStringList> takeGroups(QSignalSpy &spy)
{
    QList<QStringList> groups;
    while (!spy.isEmpty())
        groups += spy.takeFirst().constFirst().toStringList();
    return groups;
}

} // namespace

class TstOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aFlagHasAKeyAndADefault_data();
    void aFlagHasAKeyAndADefault();
    void aNumberHasAKeyAndADefault_data();
    void aNumberHasAKeyAndADefault();
    void aFontHasAKeyAndADefault_data();
    void aFontHasAKeyAndADefault();
    void everyOptionIsTested();

    void aFlagIsReadFromTheFile_data();
    void aFlagIsReadFromTheFile();
    void aNumberIsReadFromTheFile_data();
    void aNumberIsReadFromTheFile();
    void aFontOfAnotherKindReadsAsTheDefault_data();
    void aFontOfAnotherKindReadsAsTheDefault();
    void aValueOfAnotherKindIsReplaced();
    void aValueOfAnotherKindReadsTheSameBeforeItIsWritten();

    void aChangeAnnouncesItsGroup();
    void anEqualValueAnnouncesNothing();
    void aRawKeyIsStored();
    void aRawValueThatIsEqualAnnouncesNothing_data();
    void aRawValueThatIsEqualAnnouncesNothing();
    void aKeyWithoutGroupIsItsOwnGroup();

    void aBatchAnnouncesEachGroupOnceInOrder();
    void anInnerBatchAnnouncesNothing();
    void aBatchWithoutChangesAnnouncesNothing();
    void aReceiverMayChangeOptions();

    void anotherFileAnnouncesAllGroups();
    void anotherFileLeavesTheFirstAsItWas();
    void withoutAPathTheUsersFileIsUsed();
    void whatOthersWriteIsReadBySync();
    void syncFailsWhereNoFileCanBe();
    void aGuardThatAKilledProcessLeftHoldsNothingUp();
    void aPipeIsNotOpened();
    void thereIsOneObject();

private:
    /** Makes the ini file with these lines and starts to use it. */
    void useFile(const QByteArray &content);
    /** What the ini file holds under a key, seen with other eyes. */
    [[nodiscard]] QVariant storedValue(const QString &key);

    std::unique_ptr<QTemporaryDir> mFolder;
    QString mPath;
};

void TstOptions::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(mFolder->isValid());
    mPath = mFolder->filePath(u"options.ini"_s);
    tvlOptions()->setFilePath(mPath);
}

void TstOptions::cleanup()
{
    // Written now, or the folder would be made again to write into.
    QVERIFY(tvlOptions()->sync());
    mFolder.reset();
}

void TstOptions::useFile(const QByteArray &content)
{
    mPath = mFolder->filePath(u"written.ini"_s);
    QFile file(mPath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    tvlOptions()->setFilePath(mPath);
}

QVariant TstOptions::storedValue(const QString &key)
{
    // A copy, because two QSettings on one file share what they have in memory.
    const QString copy = mFolder->filePath(u"copy.ini"_s);
    QFile::remove(copy);
    if (!tvlOptions()->sync() || !QFile::copy(mPath, copy))
        return {};
    return QSettings(copy, QSettings::IniFormat).value(key);
}

void TstOptions::aFlagHasAKeyAndADefault_data()
{
    QTest::addColumn<TVLOptions::Flag>("flag");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("defaultValue");

    const auto row = [](TVLOptions::Flag flag, int number, const char *key, bool defaultValue) {
        QTest::newRow(key) << flag << number << QString::fromLatin1(key) << defaultValue;
    };
    row(TVLOptions::PreviousExitedNormally, 0, "General/PreviousExitedNormally", true);
    row(TVLOptions::ImportHtmlAsText, 9, "ImportExport/ImportHtmlAsText", false);
    row(TVLOptions::OnlyDisplayableFormats, 10, "ImportExport/OnlyDisplayableFormats", false);
    row(TVLOptions::RemoveInvalidRtfCharacters, 11, "ImportExport/RemoveInvalidRtfCharacters",
        false);
    row(TVLOptions::SplitFirstLineOfNotes, 13, "ImportExport/SplitFirstLineOfNotes", true);
    row(TVLOptions::TreatTextWithChildrenAsFolder, 22, "Navigation/TreatTextWithChildrenAsFolder",
        true);
    row(TVLOptions::DropOnItemsInLists, 28, "Navigation/DropOnItemsInLists", false);
}

void TstOptions::aFlagHasAKeyAndADefault()
{
    QFETCH(TVLOptions::Flag, flag);
    QFETCH(QString, key);
    QFETCH(bool, defaultValue);
    QTEST(int(flag), "number");
    QCOMPARE(TVLOptions::keyText(flag), key);
    QCOMPARE(TVLOptions::defaultValue(flag), defaultValue);
    QCOMPARE(tvlOptions()->value(flag), defaultValue);

    for (const bool value : {!defaultValue, defaultValue}) {
        tvlOptions()->setValue(flag, value);
        QCOMPARE(tvlOptions()->value(flag), value);
        QCOMPARE(storedValue(key), QVariant(value ? u"true"_s : u"false"_s));
    }
    tvlOptions()->setValue(flag, !defaultValue);
    tvlOptions()->setFilePath(mPath);
    QCOMPARE(tvlOptions()->value(flag), !defaultValue);
}

void TstOptions::aNumberHasAKeyAndADefault_data()
{
    QTest::addColumn<TVLOptions::Int>("option");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("defaultValue");

    QTest::newRow("auto save") << TVLOptions::AutoSaveSeconds << 1 << u"General/AutoSaveSeconds"_s
                               << 10;
}

void TstOptions::aNumberHasAKeyAndADefault()
{
    QFETCH(TVLOptions::Int, option);
    QFETCH(QString, key);
    QFETCH(int, defaultValue);
    QTEST(int(option), "number");
    QCOMPARE(TVLOptions::keyText(option), key);
    QCOMPARE(TVLOptions::defaultValue(option), defaultValue);
    QCOMPARE(tvlOptions()->value(option), defaultValue);

    tvlOptions()->setValue(option, 42);
    QCOMPARE(tvlOptions()->value(option), 42);
    QCOMPARE(storedValue(key), QVariant(u"42"_s));
    tvlOptions()->setFilePath(mPath);
    QCOMPARE(tvlOptions()->value(option), 42);
}

void TstOptions::aFontHasAKeyAndADefault_data()
{
    QTest::addColumn<TVLOptions::Font>("option");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("key");

    QTest::newRow("default font") << TVLOptions::DefaultFont << 6 << u"TextEditing/DefaultFont"_s;
}

void TstOptions::aFontHasAKeyAndADefault()
{
    QFETCH(TVLOptions::Font, option);
    QFETCH(QString, key);
    QTEST(int(option), "number");
    QCOMPARE(TVLOptions::keyText(option), key);
    QCOMPARE(TVLOptions::defaultValue(option), QFont());
    QCOMPARE(tvlOptions()->value(option), QFont());

    QFont font(u"Some Family"_s, 17, QFont::Bold, true);
    font.setUnderline(true);
    tvlOptions()->setValue(option, font);
    QCOMPARE(tvlOptions()->value(option), font);
    QCOMPARE(storedValue(key).value<QFont>(), font);
    tvlOptions()->setFilePath(mPath);
    QCOMPARE(tvlOptions()->value(option), font);
}

void TstOptions::everyOptionIsTested()
{
    QCOMPARE(QMetaEnum::fromType<TVLOptions::Flag>().keyCount(), 7);
    QCOMPARE(QMetaEnum::fromType<TVLOptions::Int>().keyCount(), 1);
    QCOMPARE(QMetaEnum::fromType<TVLOptions::Font>().keyCount(), 1);
}

void TstOptions::aFlagIsReadFromTheFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<std::optional<bool>>("expected");

    using Expected = std::optional<bool>;
    QTest::newRow("true") << QByteArray("true") << Expected(true);
    QTest::newRow("false") << QByteArray("false") << Expected(false);
    QTest::newRow("upper case") << QByteArray("TRUE") << Expected(true);
    QTest::newRow("mixed case") << QByteArray("False") << Expected(false);
    QTest::newRow("empty") << QByteArray("") << Expected(false);
    QTest::newRow("number") << QByteArray("1") << Expected(true);
    QTest::newRow("number in quotes") << QByteArray("\"1\"") << Expected(true);
    QTest::newRow("zero") << QByteArray("0") << Expected(false);
    QTest::newRow("word") << QByteArray("yes") << Expected(true);
    QTest::newRow("list") << QByteArray("true, false") << Expected();
    QTest::newRow("invalid") << QByteArray("@Invalid()") << Expected();
}

void TstOptions::aFlagIsReadFromTheFile()
{
    QFETCH(QByteArray, text);
    QFETCH(std::optional<bool>, expected);
    useFile("[ImportExport]\nSplitFirstLineOfNotes=" + text + "\nImportHtmlAsText=" + text + '\n');
    // One that is on by default and one that is off.
    QCOMPARE(tvlOptions()->value(TVLOptions::SplitFirstLineOfNotes), expected.value_or(true));
    QCOMPARE(tvlOptions()->value(TVLOptions::ImportHtmlAsText), expected.value_or(false));
}

void TstOptions::aNumberIsReadFromTheFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("number") << QByteArray("25") << 25;
    QTest::newRow("zero") << QByteArray("0") << 0;
    QTest::newRow("the most") << QByteArray("2147483") << 2147483;
    QTest::newRow("more than a timer can wait") << QByteArray("2147484") << 10;
    QTest::newRow("negative") << QByteArray("-1") << 10;
    QTest::newRow("empty") << QByteArray("") << 10;
    QTest::newRow("word") << QByteArray("ten") << 10;
    QTest::newRow("flag") << QByteArray("true") << 10;
    QTest::newRow("fraction") << QByteArray("2.5") << 10;
    QTest::newRow("too large") << QByteArray("99999999999") << 10;
    QTest::newRow("list") << QByteArray("1, 2") << 10;
    QTest::newRow("invalid") << QByteArray("@Invalid()") << 10;
}

void TstOptions::aNumberIsReadFromTheFile()
{
    QFETCH(QByteArray, text);
    // An ini file keeps the name General for keys without a group.
    useFile("[%General]\nAutoSaveSeconds=" + text + '\n');
    QTEST(tvlOptions()->value(TVLOptions::AutoSaveSeconds), "expected");
}

void TstOptions::aFontOfAnotherKindReadsAsTheDefault_data()
{
    QTest::addColumn<QByteArray>("text");

    for (const char *text : {"", "12", "true", "Some Family", "a, b", "@Invalid()", "@Size(1 2)"})
        QTest::newRow(text) << QByteArray(text);
}

void TstOptions::aFontOfAnotherKindReadsAsTheDefault()
{
    QFETCH(QByteArray, text);
    useFile("[TextEditing]\nDefaultFont=" + text + '\n');
    QCOMPARE(tvlOptions()->value(TVLOptions::DefaultFont), QFont());
}

void TstOptions::aValueOfAnotherKindIsReplaced()
{
    useFile("[%General]\nAutoSaveSeconds=soon\n");
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    // The option reads as 10 before and after, so nobody need hear of it.
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 10);
    QCOMPARE(spy.size(), 0);
    QCOMPARE(storedValue(u"General/AutoSaveSeconds"_s), QVariant(u"10"_s));
}

void TstOptions::aValueOfAnotherKindReadsTheSameBeforeItIsWritten()
{
    const QString key = TVLOptions::keyText(TVLOptions::AutoSaveSeconds);
    const QVariant values[] = {u"7"_s, 7, 7.5, true, QStringList{u"7"_s, u"8"_s}, QFont()};
    for (const QVariant &value : values) {
        tvlOptions()->setValue(key, value);
        const int before = tvlOptions()->value(TVLOptions::AutoSaveSeconds);
        tvlOptions()->setFilePath(mPath);
        QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), before);
    }
}

void TstOptions::aChangeAnnouncesItsGroup()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setValue(TVLOptions::DropOnItemsInLists, true);
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"Navigation"_s}}));
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"General"_s}}));
    tvlOptions()->setValue(TVLOptions::DefaultFont, QFont(u"Some Family"_s));
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"TextEditing"_s}}));
}

void TstOptions::anEqualValueAnnouncesNothing()
{
    const QFont font(u"Some Family"_s, 20);
    tvlOptions()->setValue(TVLOptions::DropOnItemsInLists, true);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    tvlOptions()->setValue(TVLOptions::DefaultFont, font);

    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setValue(TVLOptions::DropOnItemsInLists, true);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    tvlOptions()->setValue(TVLOptions::DefaultFont, font);
    // The default, though it wasn't in the file.
    tvlOptions()->setValue(TVLOptions::SplitFirstLineOfNotes, true);
    QCOMPARE(spy.size(), 0);
    QCOMPARE(storedValue(u"ImportExport/SplitFirstLineOfNotes"_s), QVariant(u"true"_s));
}

void TstOptions::aRawKeyIsStored()
{
    const QString key = u"Some/Other/Key"_s;
    QVERIFY(!tvlOptions()->value(key).isValid());
    QCOMPARE(tvlOptions()->value(key, 5), QVariant(5));

    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setValue(key, u"text"_s);
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"Some"_s}}));
    QCOMPARE(tvlOptions()->value(key, 5), QVariant(u"text"_s));
    QCOMPARE(storedValue(key), QVariant(u"text"_s));
}

void TstOptions::aRawValueThatIsEqualAnnouncesNothing_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("otherValue");

    QTest::newRow("text") << QVariant(u"a"_s) << QVariant(u"b"_s);
    QTest::newRow("case of a text") << QVariant(u"a"_s) << QVariant(u"A"_s);
    QTest::newRow("flag") << QVariant(true) << QVariant(false);
    QTest::newRow("number") << QVariant(5) << QVariant(6);
    QTest::newRow("text for number") << QVariant(5) << QVariant(u"five"_s);
    QTest::newRow("fraction") << QVariant(5.25) << QVariant(5.5);
    QTest::newRow("font") << QVariant(QFont(u"A"_s)) << QVariant(QFont(u"B"_s));
    QTest::newRow("list") << QVariant(QStringList{u"a"_s, u"b"_s})
                          << QVariant(QStringList{u"b"_s, u"a"_s});
}

void TstOptions::aRawValueThatIsEqualAnnouncesNothing()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, otherValue);
    const QString key = u"Some/Key"_s;
    tvlOptions()->setValue(key, value);
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setValue(key, value);
    QCOMPARE(spy.size(), 0);

    // Also when it has become a text in the file.
    tvlOptions()->setFilePath(mPath);
    spy.clear();
    tvlOptions()->setValue(key, value);
    QCOMPARE(spy.size(), 0);
    tvlOptions()->setValue(key, otherValue);
    QCOMPARE(spy.size(), 1);
}

void TstOptions::aKeyWithoutGroupIsItsOwnGroup()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setValue(u"Loner"_s, 1);
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"Loner"_s}}));
}

void TstOptions::aBatchAnnouncesEachGroupOnceInOrder()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    {
        const Batch batch(tvlOptions());
        tvlOptions()->setValue(TVLOptions::DropOnItemsInLists, true);
        tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
        tvlOptions()->setValue(u"Another/Key"_s, 1);
        tvlOptions()->setValue(TVLOptions::TreatTextWithChildrenAsFolder, false);
        tvlOptions()->setValue(TVLOptions::PreviousExitedNormally, false);
        QCOMPARE(spy.size(), 0);
        QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 11);
    }
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"Navigation"_s, u"General"_s, u"Another"_s}}));

    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 12);
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"General"_s}}));
}

void TstOptions::anInnerBatchAnnouncesNothing()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    {
        const Batch outer(tvlOptions());
        {
            const Batch inner(tvlOptions());
            tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
        }
        QCOMPARE(spy.size(), 0);
        tvlOptions()->setValue(TVLOptions::ImportHtmlAsText, true);
    }
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"General"_s, u"ImportExport"_s}}));
}

void TstOptions::aBatchWithoutChangesAnnouncesNothing()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    {
        const Batch batch(tvlOptions());
        tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 10);
    }
    QCOMPARE(spy.size(), 0);
}

void TstOptions::aReceiverMayChangeOptions()
{
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    QObject receiver;
    connect(tvlOptions(), &TVLOptions::groupsChanged, &receiver, [](const QStringList &groups) {
        if (groups.contains(u"General"_s))
            tvlOptions()->setValue(TVLOptions::DropOnItemsInLists, true);
    });
    {
        const Batch batch(tvlOptions());
        tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    }
    QCOMPARE(takeGroups(spy), QList<QStringList>({{u"General"_s}, {u"Navigation"_s}}));
}

void TstOptions::anotherFileAnnouncesAllGroups()
{
    tvlOptions()->setValue(u"Old/Key"_s, 1);
    const QString path = mFolder->filePath(u"new.ini"_s);
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue(u"New/Key"_s, 2);
    }
    QSignalSpy spy(tvlOptions(), &TVLOptions::groupsChanged);
    tvlOptions()->setFilePath(path);
    QCOMPARE(tvlOptions()->filePath(), path);
    QCOMPARE(tvlOptions()->value(u"New/Key"_s).toInt(), 2);
    QVERIFY(!tvlOptions()->value(u"Old/Key"_s).isValid());

    QList<QStringList> groups = takeGroups(spy);
    QCOMPARE(groups.size(), 1);
    groups.first().sort();
    QCOMPARE(groups.constFirst(),
             QStringList({u"General"_s, u"ImportExport"_s, u"Navigation"_s, u"New"_s, u"Old"_s,
                          u"TextEditing"_s}));
}

void TstOptions::anotherFileLeavesTheFirstAsItWas()
{
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    tvlOptions()->setFilePath(mFolder->filePath(u"new.ini"_s));
    QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 10);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 12);
    tvlOptions()->setFilePath(mPath);
    QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 11);
}

void TstOptions::withoutAPathTheUsersFileIsUsed()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, mFolder->filePath(u"user"_s));
    tvlOptions()->setFilePath({});
    QCOMPARE(tvlOptions()->filePath(), mFolder->filePath(u"user/Tavelinor/Tavelinor.ini"_s));
    tvlOptions()->setFilePath(mPath);
}

void TstOptions::whatOthersWriteIsReadBySync()
{
    tvlOptions()->setValue(TVLOptions::ImportHtmlAsText, true);
    QVERIFY(tvlOptions()->sync());

    QFile file(mPath);
    QVERIFY(file.open(QIODevice::Append));
    QVERIFY(file.write("[%General]\nAutoSaveSeconds=77\n") > 0);
    file.close();
    QVERIFY(tvlOptions()->sync());
    QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 77);
    QCOMPARE(tvlOptions()->value(TVLOptions::ImportHtmlAsText), true);
}

void TstOptions::syncFailsWhereNoFileCanBe()
{
    // A file where the folder should be stops also the superuser.
    QFile file(mFolder->filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    tvlOptions()->setFilePath(mFolder->filePath(u"file/options.ini"_s));
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    QVERIFY(!tvlOptions()->sync());
    QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 11);
    tvlOptions()->setFilePath(mPath);
    QVERIFY(tvlOptions()->sync());
}

void TstOptions::thereIsOneObject()
{
    QVERIFY(tvlOptions());
    QCOMPARE(tvlOptions(), tvlOptions());
}

void TstOptions::aGuardThatAKilledProcessLeftHoldsNothingUp()
{
    const auto leaveGuard = [this] {
        QFile guard(mPath + u".lock"_s);
        QVERIFY(guard.open(QIODevice::WriteOnly));
    };
    QElapsedTimer timer;
    timer.start();
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    leaveGuard();
    QVERIFY(tvlOptions()->sync());
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 12);
    leaveGuard();
    tvlOptions()->setFilePath(mFolder->filePath(u"new.ini"_s));
    leaveGuard();
    tvlOptions()->setFilePath(mPath);
    leaveGuard();
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 13);
    QCoreApplication::processEvents();
    QVERIFY(timer.elapsed() < 10'000);
    QCOMPARE(storedValue(u"General/AutoSaveSeconds"_s), QVariant(u"13"_s));
}

void TstOptions::aPipeIsNotOpened()
{
    const QString pipe = mFolder->filePath(u"pipe.ini"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    tvlOptions()->setFilePath(pipe);
    tvlOptions()->setValue(TVLOptions::AutoSaveSeconds, 11);
    QCOMPARE(tvlOptions()->value(TVLOptions::AutoSaveSeconds), 11);
    QVERIFY(!tvlOptions()->sync());
    tvlOptions()->setFilePath(mPath);
}

TVL_TEST(TstOptions)

#include "tst_options.moc"
