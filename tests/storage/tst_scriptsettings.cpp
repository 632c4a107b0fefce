#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TVLScriptMode.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

using Format = TVLProjectFolderFormat;

namespace {

const QString ModeFile = u"Settings/scriptformat.xml"_s;

TVLScriptMode modeCalled(const QString &title)
{
    TVLScriptMode mode = TVLScriptMode::factoryDefaults();
    mode.mTitle = title;
    return mode;
}

} // namespace

class TstScriptSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aModeIsWrittenAndRead();
    void theProjectMayBeNamedByItsBinder();
    void aModeReplacesTheOneBefore();
    void aProjectWithoutTheFileLeavesTheMode();
    void lookingForTheFileMakesNothing();
    void aDamagedFileLeavesTheModeAndItself();
    void aModeThatCannotBeStoredLeavesTheFile();
    void aFolderInPlaceOfTheFileIsToldOf();
    void aFileInPlaceOfTheFolderIsToldOf();
    void theTagsAreThoseOfTheBinder_data();
    void theTagsAreThoseOfTheBinder();
};

void TstScriptSettings::aModeIsWrittenAndRead()
{
    const TestProject project;
    QString error;
    QVERIFY(Format::writeScriptSettings(project.path(), modeCalled(u"Opera"_s), &error));
    QCOMPARE(error, QString());
    QCOMPARE(project.readFile(ModeFile), modeCalled(u"Opera"_s).toXml());
    TVLScriptMode mode;
    QVERIFY(Format::readScriptSettings(project.path(), &mode, &error));
    QVERIFY(mode == modeCalled(u"Opera"_s));
    QCOMPARE(error, QString());
}

void TstScriptSettings::theProjectMayBeNamedByItsBinder()
{
    const TestProject project;
    QVERIFY(project.create());
    QVERIFY(Format::writeScriptSettings(project.binderPath(), modeCalled(u"Opera"_s)));
    TVLScriptMode mode;
    QVERIFY(Format::readScriptSettings(project.binderPath(), &mode));
    QCOMPARE(mode.mTitle, u"Opera"_s);
    QVERIFY(QFileInfo::exists(project.path(ModeFile)));
}

void TstScriptSettings::aModeReplacesTheOneBefore()
{
    const TestProject project;
    QVERIFY(Format::writeScriptSettings(project.path(), TVLScriptMode::factoryDefaults()));
    QVERIFY(Format::writeScriptSettings(project.path(), TVLScriptMode()));
    TVLScriptMode mode = TVLScriptMode::factoryDefaults();
    QVERIFY(Format::readScriptSettings(project.path(), &mode));
    QVERIFY(mode == TVLScriptMode());
}

void TstScriptSettings::aProjectWithoutTheFileLeavesTheMode()
{
    const TestProject project;
    project.writeFile(u"Settings/ui.ini"_s, "");
    TVLScriptMode mode = modeCalled(u"Opera"_s);
    QVERIFY(Format::readScriptSettings(project.path(), &mode));
    QVERIFY(mode == modeCalled(u"Opera"_s));
}

void TstScriptSettings::lookingForTheFileMakesNothing()
{
    const TestProject project;
    TVLScriptMode mode;
    QVERIFY(Format::readScriptSettings(project.path(), &mode));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstScriptSettings::aDamagedFileLeavesTheModeAndItself()
{
    const TestProject project;
    const QByteArray damaged = TVLScriptMode::factoryDefaults().toXml().chopped(20);
    project.writeFile(ModeFile, damaged);
    TVLScriptMode mode = modeCalled(u"Opera"_s);
    QString error;
    QVERIFY(!Format::readScriptSettings(project.path(), &mode, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(mode == modeCalled(u"Opera"_s));
    QCOMPARE(project.readFile(ModeFile), damaged);
}

void TstScriptSettings::aModeThatCannotBeStoredLeavesTheFile()
{
    const TestProject project;
    project.writeFile(ModeFile, "what was there");
    QString error;
    QVERIFY(!Format::writeScriptSettings(project.path(), modeCalled(QChar(1)), &error));
    QCOMPARE(error, u"The script mode has names that can't be stored."_s);
    QCOMPARE(project.readFile(ModeFile), QByteArray("what was there"));
    QVERIFY(!Format::writeScriptSettings(project.path(), modeCalled(QChar(1))));
}

void TstScriptSettings::aFolderInPlaceOfTheFileIsToldOf()
{
    const TestProject project;
    project.writeFile(ModeFile + u"/inside"_s, "x");
    QString error;
    QVERIFY(!Format::writeScriptSettings(project.path(), TVLScriptMode(), &error));
    QVERIFY(!error.isEmpty());
    TVLScriptMode mode = modeCalled(u"Opera"_s);
    QVERIFY(!Format::readScriptSettings(project.path(), &mode));
    QVERIFY(mode == modeCalled(u"Opera"_s));
}

void TstScriptSettings::aFileInPlaceOfTheFolderIsToldOf()
{
    const TestProject project;
    project.writeFile(u"Settings"_s, "a file");
    QString error;
    QVERIFY(!Format::writeScriptSettings(project.path(), TVLScriptMode(), &error));
    QVERIFY(!error.isEmpty());
    // Nothing is written beside the place where it belongs.
    QCOMPARE(project.files().keys(), QStringList({u"Settings"_s}));
}

void TstScriptSettings::theTagsAreThoseOfTheBinder_data()
{
    QTest::addColumn<QString>("tag");
    QTest::newRow("ProjectTitle") << Format::ProjectTitleTag;
    QTest::newRow("AbbreviatedTitle") << Format::AbbreviatedTitleTag;
    QTest::newRow("FullName") << Format::FullNameTag;
    QTest::newRow("LastName") << Format::LastNameTag;
    QTest::newRow("FirstName") << Format::FirstNameTag;
}

void TstScriptSettings::theTagsAreThoseOfTheBinder()
{
    QTEST(QString::fromLatin1(QTest::currentDataTag()), "tag");
}

TVL_TEST(TstScriptSettings)
#include "tst_scriptsettings.moc"
