#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLOptions.h"
#include "TVLProjectModel.h"
#include "TVLTextDocument.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QFile>
#include <QPersistentModelIndex>
#include <QTest>

using namespace Qt::StringLiterals;

/** Texts in a run that follows one that came to no regular end. */
class TstTextsAfterCrash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void errorsAreAskedAboutBeforeATextIsLoaded();
    void aTextThatIsWantedAllTheSameIsLoaded();
    void anItemMayGoWhileTheQuestionIsAsked();

private:
    std::unique_ptr<TestProject> mProject;
    TestModel mModel{nullptr};
    QPersistentModelIndex mText;
    std::unique_ptr<TVLUnattendedMessageBoxes> mBoxes;
};

void TstTextsAfterCrash::initTestCase()
{
    tvlOptions()->setValue(TVLOptions::PreviousExitedNormally, false);
}

void TstTextsAfterCrash::init()
{
    mProject = std::make_unique<TestProject>();
    mModel = mProject->create();
    mText = firstText(mModel.get());
    mProject->writeFile(u"Files/Docs/%1.rtf"_s.arg(mModel->projectNode(mText)->mId),
                        "{\\rtf1 Words}");
    mProject->writeFile(u"inspector"_s, "#!/bin/sh\nexit 1\n");
    const QString inspector = mProject->path(u"inspector"_s);
    QVERIFY(
        QFile::setPermissions(inspector, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("TAVEL_RTFI", inspector.toUtf8());
    mBoxes = std::make_unique<TVLUnattendedMessageBoxes>();
}

void TstTextsAfterCrash::cleanup()
{
    mBoxes.reset();
    mModel = TestModel(nullptr);
    qunsetenv("TAVEL_RTFI");
}

void TstTextsAfterCrash::errorsAreAskedAboutBeforeATextIsLoaded()
{
    const TVLTextDocument *text = mModel->referenceText(mText);
    QVERIFY(text->isReadOnly());
    QCOMPARE(text->toPlainText(), QString());
    const auto boxes = mBoxes->takeBoxes();
    QCOMPARE(boxes.size(), 2);
    QCOMPARE(boxes.at(0).title, u"RTF Reader Error"_s);
    QCOMPARE(boxes.at(0).button, QMessageBox::No);
    QVERIFY2((boxes.at(1).text + boxes.at(1).informativeText + boxes.at(1).detailedText)
                 .contains(u"RTF Inspector could not load document file: '"_s),
             qPrintable(boxes.at(1).text + boxes.at(1).informativeText));
}

void TstTextsAfterCrash::aTextThatIsWantedAllTheSameIsLoaded()
{
    mBoxes->setAnswer(QMessageBox::Yes);
    const TVLTextDocument *text = mModel->referenceText(mText);
    QVERIFY(!text->isReadOnly());
    QCOMPARE(text->toPlainText(), u"Words"_s);
    QCOMPARE(mBoxes->takeBoxes().size(), 1);
}

void TstTextsAfterCrash::anItemMayGoWhileTheQuestionIsAsked()
{
    connect(mBoxes.get(), &TVLUnattendedMessageBoxes::answered, this,
            [this] { mModel->removeIndexFromModel(mText); });
    QCOMPARE(mModel->referenceText(mText), nullptr);
    QVERIFY(!mText.isValid());
    QCOMPARE(mBoxes->takeBoxes().size(), 1);
}

TVL_TEST(TstTextsAfterCrash)
#include "tst_textsaftercrash.moc"
