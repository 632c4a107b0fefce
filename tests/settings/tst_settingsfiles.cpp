#include "SettingsFile.h"
#include "TestMain.h"
#include "TestScale.h"

#include "TVLProjectSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Asks for everything that has a number or an accessor. */
void readAll(const TVLProjectSettings &settings)
{
    for (int number = -1; number <= 120; ++number) {
        static_cast<void>(settings.value(TVLSettings::FlagSetting(number)));
        static_cast<void>(settings.value(TVLSettings::IntSetting(number)));
        static_cast<void>(settings.value(TVLSettings::StringSetting(number)));
        static_cast<void>(settings.value(TVLSettings::StringListSetting(number)));
        static_cast<void>(settings.value(TVLSettings::IntListSetting(number)));
        static_cast<void>(settings.value(TVLSettings::ByteArraySetting(number)));
    }
    static_cast<void>(settings.name());
    static_cast<void>(settings.preview());
    static_cast<void>(settings.windowGeometry(nullptr));
    static_cast<void>(settings.windowMaximized(nullptr));
    static_cast<void>(settings.visibilityFlags(nullptr));
    static_cast<void>(settings.binderAffectsType());
    static_cast<void>(settings.inspectorMode());
    static_cast<void>(settings.editorSplitterState());
    static_cast<void>(settings.ignoreList());
    static_cast<void>(settings.binderHistory());
}

/** A file with one entry of many kinds, to be damaged. */
QByteArray wholeFile()
{
    const SettingsFile file;
    {
        TVLProjectSettings settings(file.path());
        settings.setName(u"M\u00fcller"_s);
        settings.setPreview(QImage(3, 3, QImage::Format_Mono));
        settings.setWindowPosition(QPoint(1, 2));
        settings.setWindowSize(QSize(3, 4), true);
        settings.setIgnoreList({u"one"_s, u"two"_s});
        settings.setBinderHistory(QByteArray(40, '\xf0'));
        settings.setValue(TVLSettings::ExpandedBinderItems, {1, 2, 3});
        settings.setValue(TVLSettings::CardSize, 5);
        settings.setValue(TVLSettings::GhostNotes, true);
    }
    return file.content();
}

} // namespace

class TstSettingsFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openingAndReadingMakesNoFile();
    void readingADamagedFileTouchesNothing_data();
    void readingADamagedFileTouchesNothing();
    void aDamagedFileIsKeptBeforeTheFirstChange_data();
    void aDamagedFileIsKeptBeforeTheFirstChange();
    void aWholeFileIsNotKept_data();
    void aWholeFileIsNotKept();
    void everyWayOfChangingKeepsADamagedFile();
    void whatChangesNothingLeavesADamagedFileAlone();
    void theSecondObjectOnADamagedFileKeepsItToo();
    void aDamagedFileIsKeptOnceForTheSameContent();
    void anotherDamagedFileDoesNotReplaceTheFirst();
    void aDamagedFileThatCannotBeKeptIsNotWritten();
    void whatCanBeReadOfADamagedFileIsRead();
    void junkBreaksNothing();
    void aCutFileBreaksNothing();
    void aFileWithOneWrongByteBreaksNothing();
    void aHugeFileIsRead();
    void aFileThatCannotBeWrittenLosesNothing_data();
    void aFileThatCannotBeWrittenLosesNothing();
    void aGuardThatAKilledProcessLeftHoldsNothingUp_data();
    void aGuardThatAKilledProcessLeftHoldsNothingUp();
    void aPipeInAFilesPlaceIsNotOpened();
};

void TstSettingsFiles::openingAndReadingMakesNoFile()
{
    const SettingsFile file(u"Folder/ui.ini"_s);
    readAll(TVLProjectSettings(file.path()));
    QVERIFY(!QFile::exists(file.pathBeside(u"Folder"_s)));
}

void TstSettingsFiles::readingADamagedFileTouchesNothing_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no entries") << QByteArray("a writer's words\nand more\n");
    QTest::newRow("open group") << QByteArray("[General\nlayoutName=x\n");
    QTest::newRow("a line without a value") << QByteArray("[General]\nlayoutName=x\nword\n");
    QTest::newRow("in another group") << QByteArray("[General]\na=1\n[Compile]\nword\n");
    QTest::newRow("not UTF-8") << QByteArray("[General]\nlayoutName=M\xfcller\n");
    QTest::newRow("NUL") << QByteArray("[General]\nlayoutName=a\0b\n", 26);
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0G\0]\0\n\0a\0=\0"
                                          "1\0\n\0",
                                          18);
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf[General]\nlayoutName=x\n");
    QTest::newRow("only NULs") << QByteArray(4096, '\0');
    QTest::newRow("zip") << QByteArray("PK\3\4\x14\0\0\0\xff=\xfe\n", 12);
}

void TstSettingsFiles::readingADamagedFileTouchesNothing()
{
    QFETCH(QByteArray, content);
    const SettingsFile file;
    file.write(content);
    {
        TVLProjectSettings settings(file.path());
        readAll(settings);
        settings.sync();
    }
    QCOMPARE(file.content(), content);
    QCOMPARE(file.names(), QStringList(u"ui.ini"_s));
}

void TstSettingsFiles::aDamagedFileIsKeptBeforeTheFirstChange_data()
{
    readingADamagedFileTouchesNothing_data();
}

void TstSettingsFiles::aDamagedFileIsKeptBeforeTheFirstChange()
{
    QFETCH(QByteArray, content);
    const SettingsFile file;
    file.write(content);
    {
        TVLProjectSettings settings(file.path());
        readAll(settings);
        settings.setValue(TVLSettings::CardSize, 5);
        settings.setValue(TVLSettings::CardRatio, 6);
    }
    QCOMPARE(file.names(), QStringList({u"ui.ini"_s, u"ui.ini.damaged"_s}));
    QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged"_s)), content);
    QCOMPARE(file.open<TVLProjectSettings>()->value(TVLSettings::CardSize), 5);
    QCOMPARE(file.open<TVLProjectSettings>()->value(TVLSettings::CardRatio), 6);

    // What was written can be read, so nothing more is kept.
    TVLProjectSettings(file.path()).setValue(TVLSettings::CardSize, 7);
    QCOMPARE(file.names(), QStringList({u"ui.ini"_s, u"ui.ini.damaged"_s}));
}

void TstSettingsFiles::aWholeFileIsNotKept_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blank lines") << QByteArray("\n\r\n  \n");
    QTest::newRow("comment") << QByteArray("; a word\n[General]\nlayoutName=x\n");
    QTest::newRow("line ends of Windows") << QByteArray("[General]\r\nlayoutName=x\r\n");
    QTest::newRow("no group") << QByteArray("layoutName=x\n");
    QTest::newRow("no line end") << QByteArray("[General]\nlayoutName=x");
    QTest::newRow("wrong kinds") << QByteArray("[General]\nwindowSize=x\nbinderAffects=y\n");
    QTest::newRow("whole") << wholeFile();
}

void TstSettingsFiles::aWholeFileIsNotKept()
{
    QFETCH(QByteArray, content);
    const SettingsFile file;
    file.write(content);
    TVLProjectSettings(file.path()).setValue(TVLSettings::CardRatio, 6);
    QCOMPARE(file.names(), QStringList(u"ui.ini"_s));
    const auto settings = file.open<TVLProjectSettings>();
    QCOMPARE(settings->value(TVLSettings::CardRatio), 6);
    if (content.contains("layoutName=x"))
        QCOMPARE(settings->name(), u"x"_s);
}

void TstSettingsFiles::everyWayOfChangingKeepsADamagedFile()
{
    using Change = std::function<void(TVLProjectSettings &)>;
    const Change changes[] = {
        [](TVLProjectSettings &settings) { settings.setValue(u"key"_s, 1); },
        [](TVLProjectSettings &settings) { settings.setValue(TVLSettings::GhostNotes, true); },
        [](TVLProjectSettings &settings) {
            settings.setPreview(QImage(1, 1, QImage::Format_Mono));
        },
        [](TVLProjectSettings &settings) { settings.setIgnoreList({}); },
        [](TVLProjectSettings &settings) { settings.remove(u"layoutName"_s); },
        [](TVLProjectSettings &settings) { settings.clear(); },
        [](TVLProjectSettings &settings) { QVERIFY(settings.saveToFile(settings.fileName())); },
    };
    for (const Change &change : changes) {
        const QByteArray damaged = "[General]\nlayoutName=x\nword\n";
        const SettingsFile file;
        file.write(damaged);
        {
            TVLProjectSettings settings(file.path());
            change(settings);
        }
        QVERIFY(file.content() != damaged);
        QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged"_s)), damaged);
    }
}

void TstSettingsFiles::whatChangesNothingLeavesADamagedFileAlone()
{
    const QByteArray damaged = "[General]\nlayoutName=x\nignoreList=a, b\nword\n[Other]\nkey=1\n";
    const SettingsFile file;
    file.write(damaged);
    {
        TVLProjectSettings settings(file.path());
        settings.setName(u"x"_s);
        settings.setIgnoreList({u"a"_s, u"b"_s});
        settings.setValue(u"Other/key"_s, u"1"_s);
        settings.remove(u"Another"_s);
        settings.remove(u"Other/key/below"_s);
        settings.remove(QString());
        settings.sync();
    }
    QCOMPARE(file.content(), damaged);
    QCOMPARE(file.names(), QStringList(u"ui.ini"_s));

    const SettingsFile emptied;
    emptied.write("word\n");
    TVLProjectSettings(emptied.path()).clear();
    QCOMPARE(emptied.content(), QByteArray("word\n"));
    QCOMPARE(emptied.names(), QStringList(u"ui.ini"_s));

    // A whole group goes, and is something to write.
    TVLProjectSettings(file.path()).remove(u"Other"_s);
    QCOMPARE(file.names(), QStringList({u"ui.ini"_s, u"ui.ini.damaged"_s}));
    QVERIFY(!file.open<TVLProjectSettings>()->contains(u"Other/key"_s));
}

void TstSettingsFiles::theSecondObjectOnADamagedFileKeepsItToo()
{
    const QByteArray damaged = "[General]\nlayoutName=x\nword\n";
    const SettingsFile file;
    file.write(damaged);
    // Only the first object on a file is told that it can't be read.
    readAll(TVLProjectSettings(file.path()));
    const TVLProjectSettings open(file.path());
    readAll(open);
    TVLProjectSettings(file.path()).setValue(TVLSettings::CardSize, 5);
    QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged"_s)), damaged);
}

void TstSettingsFiles::aDamagedFileIsKeptOnceForTheSameContent()
{
    const QByteArray damaged = "[General]\nlayoutName=x\nword\n";
    const SettingsFile file;
    for (int time = 0; time < 3; ++time) {
        file.write(damaged);
        TVLProjectSettings(file.path()).setValue(TVLSettings::CardSize, time);
    }
    QCOMPARE(file.names(), QStringList({u"ui.ini"_s, u"ui.ini.damaged"_s}));
}

void TstSettingsFiles::anotherDamagedFileDoesNotReplaceTheFirst()
{
    const SettingsFile file;
    for (const QByteArray &damaged : {QByteArray("one"), QByteArray("two"), QByteArray("three")}) {
        file.write(damaged);
        TVLProjectSettings(file.path()).setValue(TVLSettings::CardSize, 5);
    }
    QCOMPARE(file.names(),
             QStringList(
                 {u"ui.ini"_s, u"ui.ini.damaged"_s, u"ui.ini.damaged-2"_s, u"ui.ini.damaged-3"_s}));
    QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged"_s)), QByteArray("one"));
    QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged-2"_s)), QByteArray("two"));
    QCOMPARE(contentOf(file.pathBeside(u"ui.ini.damaged-3"_s)), QByteArray("three"));
}

void TstSettingsFiles::aDamagedFileThatCannotBeKeptIsNotWritten()
{
    // There is room for the names that writing needs, but not for the copy's.
    const QString name = QString(248, u'n');
    {
        const SettingsFile whole(name);
        TVLProjectSettings(whole.path()).setValue(TVLSettings::CardSize, 5);
        QCOMPARE(whole.content(), iniText(u"IndexCard/Size"_s, "5"));
    }
    const QByteArray damaged = "[IndexCard]\nSize=9\nword\n";
    const SettingsFile file(name);
    file.write(damaged);
    {
        TVLProjectSettings settings(file.path());
        settings.setValue(TVLSettings::CardSize, 5);
        settings.setPreview(QImage(1, 1, QImage::Format_Mono));
        settings.remove(u"IndexCard/Size"_s);
        settings.clear();
        QCOMPARE(settings.value(TVLSettings::CardSize), 9);
        QVERIFY(!settings.saveToFile(settings.fileName()));
    }
    const SettingsFile source;
    QVERIFY(!TVLProjectSettings(source.path()).saveToFile(file.path()));
    QCOMPARE(file.content(), damaged);
    QCOMPARE(file.names(), QStringList(name));
}

void TstSettingsFiles::whatCanBeReadOfADamagedFileIsRead()
{
    const SettingsFile file;
    file.write("[General]\nlayoutName=x\nword\n[IndexCard]\nSize=9\n");
    {
        TVLProjectSettings settings(file.path());
        QCOMPARE(settings.name(), u"x"_s);
        QCOMPARE(settings.value(TVLSettings::CardSize), 9);
        settings.setValue(TVLSettings::CardRatio, 1);
    }
    const auto settings = file.open<TVLProjectSettings>();
    QCOMPARE(settings->name(), u"x"_s);
    QCOMPARE(settings->value(TVLSettings::CardSize), 9);
    QCOMPARE(settings->value(TVLSettings::CardRatio), 1);
}

void TstSettingsFiles::junkBreaksNothing()
{
    QRandomGenerator random(4711);
    for (int time = 0; time < 50; ++time) {
        QByteArray junk(int(random.bounded(2000)) + 1, '\0');
        for (char &byte : junk)
            byte = char(random.bounded(256));
        const SettingsFile file;
        file.write(junk);
        {
            TVLProjectSettings settings(file.path());
            readAll(settings);
            settings.setValue(TVLSettings::CardSize, 5);
        }
        QCOMPARE(file.open<TVLProjectSettings>()->value(TVLSettings::CardSize), 5);
        const QString kept = file.pathBeside(u"ui.ini.damaged"_s);
        // Only the shortest junk can happen to be a whole file.
        QVERIFY(contentOf(kept) == junk || (junk.size() < 20 && !QFile::exists(kept)));
    }
}

void TstSettingsFiles::aCutFileBreaksNothing()
{
    const QByteArray whole = wholeFile();
    for (int size = 0; size < whole.size(); size += 5) {
        const SettingsFile file;
        file.write(whole.first(size));
        TVLProjectSettings settings(file.path());
        readAll(settings);
        settings.setValue(TVLSettings::PageCountTarget, 5);
        settings.sync();
        QCOMPARE(file.open<TVLProjectSettings>()->value(TVLSettings::PageCountTarget), 5);
    }
}

void TstSettingsFiles::aFileWithOneWrongByteBreaksNothing()
{
    const QByteArray whole = wholeFile();
    QRandomGenerator random(42);
    for (int position = 0; position < whole.size(); ++position) {
        QByteArray wrong = whole;
        wrong[position] = char(random.bounded(256));
        const SettingsFile file;
        file.write(wrong);
        readAll(TVLProjectSettings(file.path()));
        QCOMPARE(file.content(), wrong);
    }
}

void TstSettingsFiles::aHugeFileIsRead()
{
    const int keyCount = testSize(100'000);
    QByteArray content = "[Many]\n";
    for (int i = 0; i < keyCount; ++i)
        content += "key" + QByteArray::number(i) + '=' + QByteArray::number(i) + '\n';
    content += "[General]\nlayoutName=" + QByteArray(5'000'000, 'x') + '\n';
    content += "[Outliner]\nFirst\\ColumnWidths=1" + QByteArray(", 1").repeated(keyCount) + '\n';
    const SettingsFile file;
    file.write(content);
    {
        TVLProjectSettings settings(file.path());
        QCOMPARE(settings.name().size(), 5'000'000);
        QCOMPARE(settings.value(TVLSettings::FirstOutlinerColumnWidths).size(), keyCount + 1);
        settings.setValue(TVLSettings::CardSize, 5);
    }
    QCOMPARE(file.names(), QStringList(u"ui.ini"_s));
    const auto settings = file.open<TVLProjectSettings>();
    QCOMPARE(settings->allKeys().size(), keyCount + 3);
    QCOMPARE(settings->value(u"Many/key%1"_s.arg(keyCount - 1)).toInt(), keyCount - 1);
    QCOMPARE(settings->value(TVLSettings::CardSize), 5);
}

void TstSettingsFiles::aFileThatCannotBeWrittenLosesNothing_data()
{
    // Such as stops also the superuser.
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("a folder is in the file's place") << true;
    QTest::newRow("a file is in the folder's place") << false;
}

void TstSettingsFiles::aFileThatCannotBeWrittenLosesNothing()
{
    QFETCH(bool, isFolder);
    const SettingsFile inTheWay;
    if (isFolder)
        QVERIFY(QDir().mkpath(inTheWay.path() + u"/inner"_s));
    else
        inTheWay.write("words");
    const SettingsFile elsewhere;
    {
        TVLProjectSettings settings(isFolder ? inTheWay.path() : inTheWay.path() + u"/ui.ini"_s);
        QCOMPARE(settings.value(TVLSettings::CardSize), 220);
        settings.setValue(TVLSettings::CardSize, 5);
        settings.setIgnoreList({u"word"_s});
        settings.sync();
        QCOMPARE(settings.status(), QSettings::AccessError);
        // They stay in memory, and can be saved where there is room for them.
        QCOMPARE(settings.value(TVLSettings::CardSize), 5);
        QVERIFY(settings.saveToFile(elsewhere.path()));
        QVERIFY(!settings.saveToFile(settings.fileName()));
        QCOMPARE(settings.value(TVLSettings::CardSize), 5);
        QCOMPARE(settings.ignoreList(), QStringList(u"word"_s));
    }
    QCOMPARE(elsewhere.open<TVLProjectSettings>()->value(TVLSettings::CardSize), 5);
    QCOMPARE(elsewhere.open<TVLProjectSettings>()->ignoreList(), QStringList(u"word"_s));
    if (isFolder)
        QCOMPARE(QDir(inTheWay.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList(u"inner"_s));
    else
        QCOMPARE(inTheWay.content(), QByteArray("words"));
}

void TstSettingsFiles::aGuardThatAKilledProcessLeftHoldsNothingUp_data()
{
    using Change = std::function<void(const SettingsFile &)>;
    QTest::addColumn<Change>("change");
    const auto add = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    const auto leaveGuard = [](const SettingsFile &file) {
        QFile guard(file.path() + u".lock"_s);
        QVERIFY(guard.open(QIODevice::WriteOnly));
    };
    add("at the end of the object", [leaveGuard](const SettingsFile &file) {
        TVLProjectSettings settings(file.path());
        settings.setValue(TVLSettings::CardSize, 5);
        leaveGuard(file);
    });
    add("in writing", [leaveGuard](const SettingsFile &file) {
        TVLProjectSettings settings(file.path());
        settings.setValue(TVLSettings::CardSize, 5);
        leaveGuard(file);
        settings.sync();
    });
    add("when the event loop comes round", [leaveGuard](const SettingsFile &file) {
        TVLProjectSettings settings(file.path());
        settings.setValue(TVLSettings::CardSize, 5);
        leaveGuard(file);
        QCoreApplication::processEvents();
    });
    add("in another file", [leaveGuard](const SettingsFile &file) {
        const SettingsFile source;
        TVLProjectSettings settings(source.path());
        settings.setValue(TVLSettings::CardSize, 5);
        leaveGuard(file);
        QVERIFY(settings.saveToFile(file.path()));
    });
}

void TstSettingsFiles::aGuardThatAKilledProcessLeftHoldsNothingUp()
{
    // Settings by themselves wait half a minute for it.
    QFETCH(const std::function<void(const SettingsFile &)>, change);
    const SettingsFile file;
    QElapsedTimer timer;
    timer.start();
    change(file);
    QVERIFY(timer.elapsed() < 10'000);
    QCOMPARE(file.open<TVLProjectSettings>()->value(TVLSettings::CardSize), 5);
    QCOMPARE(file.names(), QStringList(u"ui.ini"_s));
}

void TstSettingsFiles::aPipeInAFilesPlaceIsNotOpened()
{
    const SettingsFile file;
    QCOMPARE(mkfifo(QFile::encodeName(file.path()).constData(), 0600), 0);
    const SettingsFile elsewhere;
    {
        TVLProjectSettings settings(file.path());
        readAll(settings);
        settings.setValue(TVLSettings::CardSize, 5);
        QCOMPARE(settings.value(TVLSettings::CardSize), 5);
        settings.sync();
        QCOMPARE(settings.status(), QSettings::AccessError);
        QVERIFY(!settings.saveToFile(file.path()));
        QVERIFY(settings.saveToFile(elsewhere.path()));
    }
    QCOMPARE(elsewhere.open<TVLProjectSettings>()->value(TVLSettings::CardSize), 5);
    QVERIFY(QFileInfo::exists(file.path()));
    QVERIFY(!QFileInfo(file.path()).isFile());
}

TVL_TEST(TstSettingsFiles)

#include "tst_settingsfiles.moc"
