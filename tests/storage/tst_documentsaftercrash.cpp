#include "DocumentFixtures.h"
#include "TVLOptions.h"
#include "TVLProjectFolderFormat.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

using Format = TVLProjectFolderFormat;

/** Reading in a run that follows one that came to no regular end. */
class TstDocumentsAfterCrash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aTextIsLookedAtBeforeItIsOpened_data();
    void aTextIsLookedAtBeforeItIsOpened();
    void aSynopsisIsNot();
    void aTextWithErrorsIsOnlyReadIfTheUserWantsIt();
    void readingAllTextsOfAnItemAsksNothing();
    void aTextThatIsWholeIsRead();
    void aMissingTextIsNoError();
    void aFolderIsStillReportedAsOne();
    void theOptionIsAskedForOnce();
};

void TstDocumentsAfterCrash::initTestCase()
{
    tvlOptions()->setValue(TVLOptions::PreviousExitedNormally, false);
}

void TstDocumentsAfterCrash::aTextIsLookedAtBeforeItIsOpened_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");

    QTest::newRow("main text") << int(TVL::MainText) << u"document"_s;
    QTest::newRow("notes") << int(TVL::NotesText) << u"notes"_s;
}

void TstDocumentsAfterCrash::aTextIsLookedAtBeforeItIsOpened()
{
    checkUnopenableDocument(u"RTF Inspector could not read %1 location: '%2'\nError: %3"_s);
}

void TstDocumentsAfterCrash::aSynopsisIsNot()
{
    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::SynopsisText));
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.synopsis(), &error));
    QCOMPARE(error,
             u"Could not open synopsis file for reading: '%1'\nError: %2"_s.arg(
                 project.path(docsPath(TVL::SynopsisText)), UnopenableFile::errorText()));
    QVERIFY(item.synopsis()->isReadOnly());
}

void TstDocumentsAfterCrash::aTextWithErrorsIsOnlyReadIfTheUserWantsIt()
{
    const TestProject project;
    project.writeFile(u"inspector"_s, "#!/bin/sh\nexit 1\n");
    QFile::setPermissions(project.path(u"inspector"_s),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("TAVEL_RTFI", project.path(u"inspector"_s).toUtf8());
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once"));
    TVLUnattendedMessageBoxes boxes;
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QCOMPARE(error,
             u"RTF Inspector could not load document file: '%1'"_s.arg(
                 project.path(docsPath(TVL::MainText))));
    QVERIFY(item.text()->isReadOnly());
    QCOMPARE(boxes.takeBoxes().size(), 1);
    // The answer holds for this run.
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QCOMPARE(boxes.takeBoxes().size(), 0);
    qunsetenv("TAVEL_RTFI");
}

void TstDocumentsAfterCrash::readingAllTextsOfAnItemAsksNothing()
{
    const TestProject project;
    project.writeFile(u"inspector"_s, "#!/bin/sh\nexit 1\n");
    QFile::setPermissions(project.path(u"inspector"_s),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("TAVEL_RTFI", project.path(u"inspector"_s).toUtf8());
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once"));
    TVLUnattendedMessageBoxes boxes;
    boxes.setAnswer(QMessageBox::Yes);
    LoadedItem item;
    QStringList errors;
    const Format format(project.path(), TVL::FormatVersion18);
    QVERIFY(!format.readDocuments(item.node(), nullptr, &errors));
    QCOMPARE(boxes.takeBoxes().size(), 0);
    QCOMPARE(errors,
             QStringList(u"RTF Inspector could not load document file: '%1'"_s.arg(
                 project.path(docsPath(TVL::MainText)))));
    // Once the user wants it, it is read.
    format.inspectTexts(item.node()->mId);
    QCOMPARE(boxes.takeBoxes().size(), 1);
    QVERIFY(format.readDocuments(item.node(), nullptr, nullptr));
    qunsetenv("TAVEL_RTFI");
}

void TstDocumentsAfterCrash::aTextThatIsWholeIsRead()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText), rtfOf("Once"));
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.text(), nullptr));
    QCOMPARE(item.text()->toPlainText(), u"Once"_s);
    QVERIFY(!item.text()->isReadOnly());
}

void TstDocumentsAfterCrash::aMissingTextIsNoError()
{
    const TestProject project;
    LoadedItem item;
    QVERIFY(Format::readDocument(project.path(), item.node(), item.text(), nullptr));
    QVERIFY(!item.text()->isReadOnly());
}

void TstDocumentsAfterCrash::aFolderIsStillReportedAsOne()
{
    const TestProject project;
    project.writeFile(docsPath(TVL::MainText) + u"/file"_s, {});
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QCOMPARE(error,
             u"Error: Trying to read directory as a file: '%1'"_s.arg(
                 project.path(docsPath(TVL::MainText))));
}

void TstDocumentsAfterCrash::theOptionIsAskedForOnce()
{
    // By now the option tells of this run.
    tvlOptions()->setValue(TVLOptions::PreviousExitedNormally, true);
    const TestProject project;
    const UnopenableFile unopenable;
    unopenable.linkTo(project, docsPath(TVL::MainText));
    LoadedItem item;
    QString error;
    QVERIFY(!Format::readDocument(project.path(), item.node(), item.text(), &error));
    QVERIFY2(error.startsWith(u"RTF Inspector could not read"), qPrintable(error));
}

TVL_TEST(TstDocumentsAfterCrash)
#include "tst_documentsaftercrash.moc"
