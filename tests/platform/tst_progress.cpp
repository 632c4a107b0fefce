#include "TestMain.h"

#include "TVLDialogProgress.h"

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int Steps = 5;

QList<QProgressDialog *> dialogs()
{
    QList<QProgressDialog *> found;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *dialog = qobject_cast<QProgressDialog *>(widget))
            found.append(dialog);
    }
    return found;
}

TVLDialogProgress::Look shownAtOnce()
{
    return {.cancelText = u"Stop"_s, .isShownAtOnce = true};
}

/** Takes away the maker that a test has set. */
class MakerEnd
{
public:
    MakerEnd() = default;
    ~MakerEnd() { TVLProgress::setMaker({}); }
    Q_DISABLE_COPY_MOVE(MakerEnd)
};

} // namespace

/** What long work tells of itself. */
class TstProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void aPlainProgressShowsNothing();
    void aDialogIsLikeItsLook();
    void aDialogWithoutCancelTextHasNoButton();
    void aDialogIsShownAtOnceOnRequest();
    void aDialogCountsTheSteps();
    void theUserMayCancel();
    void theDialogGoesWithTheWork();
    void theDialogGoesWithItsProgress();
    void workMayBeginAgain();
    void theWindowMayGoDuringTheWork();

    void aDialogOfTheCallersIsUsed();
    void aDialogOfTheCallersMayGo();
    void noDialogIsNoMatter();

    void whatIsNotToBeShownIsNot();
    void whatIsToBeShownIsADialog();
    void aMakerStandsInForTheDialog();
};

void TstProgress::cleanup()
{
    QCOMPARE(dialogs().size(), 0);
}

void TstProgress::aPlainProgressShowsNothing()
{
    TVLProgress progress;
    progress.begin(u"Text"_s, Steps);
    progress.advance();
    QVERIFY(!progress.isCanceled());
    QCOMPARE(dialogs().size(), 0);
    progress.finish();
}

void TstProgress::aDialogIsLikeItsLook()
{
    QWidget window;
    TVLDialogProgress progress({.title = u"Title"_s,
                                .cancelText = u"Stop"_s,
                                .modality = Qt::ApplicationModal,
                                .flags = Qt::WindowTitleHint},
                               &window);
    progress.begin(u"Text"_s, Steps);
    const QProgressDialog *dialog = dialogs().constFirst();
    QCOMPARE(dialog->windowTitle(), u"Title"_s);
    QCOMPARE(dialog->labelText(), u"Text"_s);
    QCOMPARE(dialog->minimum(), 0);
    QCOMPARE(dialog->maximum(), Steps);
    QCOMPARE(dialog->windowModality(), Qt::ApplicationModal);
    QCOMPARE(dialog->parentWidget(), &window);
    QVERIFY(dialog->windowFlags().testFlag(Qt::WindowTitleHint));
    QCOMPARE(dialog->findChild<QPushButton *>()->text(), u"Stop"_s);
    QVERIFY(!dialog->isVisible());
}

void TstProgress::aDialogWithoutCancelTextHasNoButton()
{
    TVLDialogProgress progress({}, nullptr);
    progress.begin(u"Text"_s, Steps);
    QVERIFY(!dialogs().constFirst()->findChild<QPushButton *>());
}

void TstProgress::aDialogIsShownAtOnceOnRequest()
{
    TVLDialogProgress progress(shownAtOnce(), nullptr);
    progress.begin(u"Text"_s, Steps);
    QCOMPARE(dialogs().constFirst()->value(), 0);
    QTRY_VERIFY(dialogs().constFirst()->isVisible());
}

void TstProgress::aDialogCountsTheSteps()
{
    TVLDialogProgress progress(shownAtOnce(), nullptr);
    progress.begin(u"Text"_s, Steps);
    progress.advance();
    QCOMPARE(dialogs().constFirst()->value(), 1);
    progress.advance(3);
    QCOMPARE(dialogs().constFirst()->value(), 4);
}

void TstProgress::theUserMayCancel()
{
    TVLDialogProgress progress(shownAtOnce(), nullptr);
    progress.begin(u"Text"_s, Steps);
    QVERIFY(!progress.isCanceled());
    dialogs().constFirst()->findChild<QPushButton *>()->click();
    QVERIFY(progress.isCanceled());
}

void TstProgress::theDialogGoesWithTheWork()
{
    TVLDialogProgress progress(shownAtOnce(), nullptr);
    progress.begin(u"Text"_s, Steps);
    progress.finish();
    QCOMPARE(dialogs().size(), 0);
    progress.advance();
    QVERIFY(!progress.isCanceled());
}

void TstProgress::theDialogGoesWithItsProgress()
{
    QWidget window;
    {
        TVLDialogProgress progress(shownAtOnce(), &window);
        progress.begin(u"Text"_s, Steps);
    }
    QCOMPARE(dialogs().size(), 0);
}

void TstProgress::workMayBeginAgain()
{
    TVLDialogProgress progress(shownAtOnce(), nullptr);
    progress.begin(u"First"_s, Steps);
    progress.advance();
    progress.begin(u"Second"_s, Steps + 1);
    QCOMPARE(dialogs().size(), 1);
    QCOMPARE(dialogs().constFirst()->labelText(), u"Second"_s);
    QCOMPARE(dialogs().constFirst()->maximum(), Steps + 1);
    QCOMPARE(dialogs().constFirst()->value(), 0);
}

void TstProgress::theWindowMayGoDuringTheWork()
{
    auto *window = new QWidget;
    window->show();
    TVLDialogProgress progress(shownAtOnce(), window);
    progress.begin(u"Text"_s, Steps);
    QTRY_VERIFY(dialogs().constFirst()->isVisible());
    bool isGone = false;
    QTimer::singleShot(0, this, [&] {
        delete window;
        isGone = true;
    });
    for (int i = 0; i < Steps; ++i) {
        progress.advance();
        QVERIFY(!progress.isCanceled());
    }
    QVERIFY(isGone);
}

// --- A dialog of the caller's

void TstProgress::aDialogOfTheCallersIsUsed()
{
    QProgressDialog dialog;
    {
        TVLDialogProgress progress(&dialog);
        progress.begin(u"Text"_s, Steps);
        progress.advance(2);
        QCOMPARE(dialog.labelText(), u"Text"_s);
        QCOMPARE(dialog.maximum(), Steps);
        QCOMPARE(dialog.value(), 2);
        dialog.cancel();
        QVERIFY(progress.isCanceled());
        progress.finish();
    }
    QCOMPARE(dialogs().size(), 1);
    QVERIFY(!dialog.isVisible());
}

void TstProgress::aDialogOfTheCallersMayGo()
{
    auto *dialog = new QProgressDialog;
    TVLDialogProgress progress(dialog);
    progress.begin(u"Text"_s, Steps);
    delete dialog;
    progress.advance();
    QVERIFY(!progress.isCanceled());
    progress.finish();
}

void TstProgress::noDialogIsNoMatter()
{
    TVLDialogProgress progress(nullptr);
    progress.begin(u"Text"_s, Steps);
    progress.advance();
    QVERIFY(!progress.isCanceled());
    progress.finish();
}

// --- What is made

void TstProgress::whatIsNotToBeShownIsNot()
{
    const auto progress = TVLDialogProgress::make(false, shownAtOnce(), nullptr);
    progress->begin(u"Text"_s, Steps);
    progress->advance();
    QVERIFY(!progress->isCanceled());
    QCOMPARE(dialogs().size(), 0);
}

void TstProgress::whatIsToBeShownIsADialog()
{
    const auto progress = TVLDialogProgress::make(true, shownAtOnce(), nullptr);
    progress->begin(u"Text"_s, Steps);
    QCOMPARE(dialogs().size(), 1);
}

void TstProgress::aMakerStandsInForTheDialog()
{
    const MakerEnd end;
    int made = 0;
    TVLProgress::setMaker([&made] {
        ++made;
        return std::make_unique<TVLProgress>();
    });
    const auto shown = TVLDialogProgress::make(true, shownAtOnce(), nullptr);
    QCOMPARE(made, 1);
    const auto hidden = TVLDialogProgress::make(false, shownAtOnce(), nullptr);
    QCOMPARE(made, 1);
    shown->begin(u"Text"_s, Steps);
    QCOMPARE(dialogs().size(), 0);
}

TVL_TEST(TstProgress)
#include "tst_progress.moc"
