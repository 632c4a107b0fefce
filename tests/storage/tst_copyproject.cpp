#include "TVLProgress.h"
#include "TVLProjectFolderFormat.h"
#include "TVLUnattendedMessageBoxes.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

/** A project of several folders, locked by someone. */
void fill(const TestProject &project)
{
    project.writeFile(u"Novel.tavelx"_s, "binder");
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Files/user.lock"_s, "[General]\nuser=someone\n");
    for (int id = 0; id < 10; ++id)
        project.writeFile(u"Files/Docs/%1.rtf"_s.arg(id), QByteArray::number(id));
    project.writeFile(u"Files/Data/A/B/C/content.rtf"_s, QByteArray(100000, 'x'));
    project.writeFile(u"Icons/\u6f22.png"_s, "icon");
    QDir().mkpath(project.path(u"Snapshots/empty"_s));
}

/** Cancels a progress dialog, or whatever else is to be done, as soon as it shows a value. */
void onProgress(const QProgressDialog *dialog, int value, const std::function<void()> &action)
{
    QObject::connect(dialog->findChild<QProgressBar *>(), &QProgressBar::valueChanged, dialog,
                     [value, action](int current) {
                         if (current == value)
                             action();
                     });
}

/** Looks at every progress dialog from the moment that it gets its title. */
class ProgressWatcher : public QObject
{
public:
    explicit ProgressWatcher(int cancelAt = -1)
        : mCancelAt(cancelAt)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *dialog = event->type() == QEvent::WindowTitleChange
            ? qobject_cast<QProgressDialog *>(watched)
            : nullptr;
        if (dialog) {
            ++mDialogs;
            onProgress(dialog, 1, [this, dialog] { look(dialog); });
            onProgress(dialog, mCancelAt, [dialog] { dialog->cancel(); });
        }
        return false;
    }

    int mDialogs = 0;
    QString mTitle;
    QString mButton;
    int mMinimum = -1;
    int mMaximum = -1;
    bool mIsModal = false;
    QWidget *mParent = nullptr;

private:
    void look(const QProgressDialog *dialog)
    {
        mTitle = dialog->windowTitle();
        mButton = dialog->findChild<QPushButton *>()->text();
        mMinimum = dialog->minimum();
        mMaximum = dialog->maximum();
        mIsModal = dialog->isModal();
        mParent = dialog->parentWidget();
    }

    int mCancelAt;
};

/** Counts its steps, and cancels at one of them. */
class CountingProgress : public TVLProgress
{
public:
    void advance(int count) override { steps += count; }
    [[nodiscard]] bool isCanceled() const override { return steps == cancelAt; }

    int steps = 0;
    int cancelAt = -1;
};

} // namespace

class TstCopyProject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aFolderIsCopiedOnAllLevels();
    void hiddenFilesAreNotCopied();
    void aFolderIsCopiedIntoExistingOnes();
    void aFileThatExistsEndsTheCopy();
    void aFolderInPlaceOfAFileEndsTheCopy();
    void aFileInPlaceOfAFolderEndsTheCopy();
    void everyEntryCountsAsProgress();
    void aCancelledFolderCopyLeavesWhatItHadCopied();
    void aCopyThatIsCancelledBeforehandCopiesNothing();

    void anyProgressIsToldOfEveryEntry();
    void anyProgressMayEndTheCopy();

    void aProjectIsCopied_data();
    void aProjectIsCopied();
    void theBinderIsRenamedOnRequest_data();
    void theBinderIsRenamedOnRequest();
    void theLockIsClearedOnRequest_data();
    void theLockIsClearedOnRequest();
    void anExistingTargetIsReplacedOnRequest();
    void aFileInTheTargetsPlaceIsReplacedOnRequest();
    void anExistingTargetIsAddedToOtherwise();
    void aProjectIsNotCopiedIntoItself_data();
    void aProjectIsNotCopiedIntoItself();
    void aLinkIntoTheProjectIsNoWayAround();
    void replacingATargetInsideTheProjectDeletesItFirst();
    void replacingNeverDeletesWhatIsToBeCopied_data();
    void replacingNeverDeletesWhatIsToBeCopied();
    void aLinkThatLeadsBackEndsTheCopy();
    void aNameThatBeginsWithTheProjectsNameIsNoSubfolder();
    void aMissingProjectIsReportedAndNotCopied();
    void aTargetThatCannotBeMadeIsReported_data();
    void aTargetThatCannotBeMadeIsReported();
    void aCancelledCopyLeavesAPartialTarget();

    void withoutProgressThereIsNoDialog();
    void progressIsShownInAModalDialog();
    void pressingTheButtonOfTheDialogEndsTheCopy();
    void aCopyWithProgressTakesTheSameSteps();

    void removingAFolder();
    void removingAProject_data();
    void removingAProject();

private:
    [[nodiscard]] QString targetPath() const { return mTarget->path(); }

    std::unique_ptr<TestProject> mSource;
    std::unique_ptr<TestProject> mTarget;
};

void TstCopyProject::init()
{
    mSource = std::make_unique<TestProject>(u"Novel"_s);
    mTarget = std::make_unique<TestProject>(u"Copy"_s);
    fill(*mSource);
}

void TstCopyProject::aFolderIsCopiedOnAllLevels()
{
    const Files before = mSource->files();
    QVERIFY(QDir().mkpath(targetPath()));
    QVERIFY(Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->files(), before);
    QVERIFY(QFileInfo(mTarget->path(u"Snapshots/empty"_s)).isDir());
    QCOMPARE(mSource->files(), before);
}

void TstCopyProject::hiddenFilesAreNotCopied()
{
    Files expected = mSource->files();
    mSource->writeFile(u".hidden"_s, "hidden");
    mSource->writeFile(u".folder/file"_s, "hidden");
    mSource->writeFile(u"Files/.hidden"_s, "hidden");
    QVERIFY(QDir().mkpath(targetPath()));
    QVERIFY(Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->files(), expected);
}

void TstCopyProject::aFolderIsCopiedIntoExistingOnes()
{
    mTarget->writeFile(u"Files/Docs/99.rtf"_s, "99");
    Files expected = mSource->files();
    expected.insert(u"Files/Docs/99.rtf"_s, "99");
    QVERIFY(Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->files(), expected);
}

void TstCopyProject::aFileThatExistsEndsTheCopy()
{
    mTarget->writeFile(u"Files/Docs/5.rtf"_s, "mine");
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->readFile(u"Files/Docs/5.rtf"_s), QByteArray("mine"));
}

void TstCopyProject::aFolderInPlaceOfAFileEndsTheCopy()
{
    mTarget->writeFile(u"Novel.tavelx/file"_s, "mine");
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->readFile(u"Novel.tavelx/file"_s), QByteArray("mine"));
}

void TstCopyProject::aFileInPlaceOfAFolderEndsTheCopy()
{
    mTarget->writeFile(u"Files"_s, "mine");
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath())));
    QCOMPARE(mTarget->readFile(u"Files"_s), QByteArray("mine"));
}

void TstCopyProject::everyEntryCountsAsProgress()
{
    // The files and the folders Files, Docs, Data, A, B, C, Icons, Snapshots and empty.
    constexpr int Entries = 15 + 9;
    QCOMPARE(mSource->files().size(), 15);
    QVERIFY(QDir().mkpath(targetPath()));
    QProgressDialog progress(QString(), QString(), 0, 1000);
    progress.setValue(0);
    QVERIFY(Format::copyDirectory(QDir(mSource->path()), QDir(targetPath()), &progress));
    QCOMPARE(progress.value(), Entries);
}

void TstCopyProject::aCancelledFolderCopyLeavesWhatItHadCopied()
{
    QVERIFY(QDir().mkpath(targetPath()));
    QProgressDialog progress(QString(), u"Stop"_s, 0, 1000);
    progress.setValue(0);
    onProgress(&progress, 12, [&progress] { progress.cancel(); });
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath()), &progress));
    const Files copied = mTarget->files();
    const Files source = mSource->files();
    QVERIFY(!copied.isEmpty());
    QVERIFY(copied.size() < source.size());
    for (auto file = copied.cbegin(); file != copied.cend(); ++file)
        QCOMPARE(file.value(), source.value(file.key()));
}

void TstCopyProject::aCopyThatIsCancelledBeforehandCopiesNothing()
{
    QVERIFY(QDir().mkpath(targetPath()));
    QProgressDialog progress(QString(), u"Stop"_s, 0, 1000);
    progress.cancel();
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath()), &progress));
    QVERIFY(QDir(targetPath()).isEmpty());
}

void TstCopyProject::anyProgressIsToldOfEveryEntry()
{
    CountingProgress progress;
    QVERIFY(Format::copyProject(mSource->path(), targetPath(), false, progress, false, false));
    QCOMPARE(progress.steps, 24);
    QCOMPARE(mTarget->files(), mSource->files());
}

void TstCopyProject::anyProgressMayEndTheCopy()
{
    QVERIFY(QDir().mkpath(targetPath()));
    CountingProgress progress;
    progress.cancelAt = 12;
    QVERIFY(!Format::copyDirectory(QDir(mSource->path()), QDir(targetPath()), progress));
    QCOMPARE(progress.steps, 12);
    QVERIFY(!mTarget->files().isEmpty());
    QVERIFY(mTarget->files().size() < mSource->files().size());
}

void TstCopyProject::aProjectIsCopied_data()
{
    QTest::addColumn<QString>("sourceSuffix");
    QTest::addColumn<QString>("targetSuffix");

    QTest::newRow("by folders") << QString() << QString();
    QTest::newRow("by folders with slashes") << u"/"_s << u"/"_s;
    QTest::newRow("by binders") << u"/Novel.tavelx"_s << u"/Copy.tavelx"_s;
}

void TstCopyProject::aProjectIsCopied()
{
    QFETCH(QString, sourceSuffix);
    QFETCH(QString, targetSuffix);

    const Files before = mSource->files();
    QVERIFY(Format::copyProject(mSource->path() + sourceSuffix, targetPath() + targetSuffix, false,
                                nullptr, false, false));
    QCOMPARE(mTarget->files(), before);
    QCOMPARE(mSource->files(), before);
}

void TstCopyProject::theBinderIsRenamedOnRequest_data()
{
    QTest::addColumn<bool>("renameBinder");

    QTest::newRow("rename") << true;
    QTest::newRow("keep") << false;
}

void TstCopyProject::theBinderIsRenamedOnRequest()
{
    QFETCH(bool, renameBinder);

    Files expected = mSource->files();
    if (renameBinder)
        expected.insert(u"Copy.tavelx"_s, expected.take(u"Novel.tavelx"_s));
    QVERIFY(
        Format::copyProject(mSource->path(), targetPath(), renameBinder, nullptr, false, false));
    QCOMPARE(mTarget->files(), expected);
    QVERIFY(QFileInfo::exists(mSource->binderPath()));
}

void TstCopyProject::theLockIsClearedOnRequest_data()
{
    QTest::addColumn<bool>("clearLock");

    QTest::newRow("clear") << true;
    QTest::newRow("keep") << false;
}

void TstCopyProject::theLockIsClearedOnRequest()
{
    QFETCH(bool, clearLock);

    Files expected = mSource->files();
    if (clearLock)
        expected.remove(u"Files/user.lock"_s);
    QVERIFY(Format::copyProject(mSource->path(), targetPath(), false, nullptr, clearLock, false));
    QCOMPARE(mTarget->files(), expected);
    QVERIFY(Format::lockExists(mSource->path()));
}

void TstCopyProject::anExistingTargetIsReplacedOnRequest()
{
    mTarget->writeFile(u"Novel.tavelx"_s, "mine");
    mTarget->writeFile(u"mine/.hidden"_s, "mine");
    QVERIFY(Format::copyProject(mSource->path(), targetPath(), false, nullptr, false, true));
    QCOMPARE(mTarget->files(), mSource->files());
    QVERIFY(!QFileInfo::exists(mTarget->path(u"mine"_s)));
}

void TstCopyProject::aFileInTheTargetsPlaceIsReplacedOnRequest()
{
    QFile file(targetPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(Format::copyProject(mSource->path(), targetPath(), false, nullptr, false, true));
    QCOMPARE(mTarget->files(), mSource->files());
}

void TstCopyProject::anExistingTargetIsAddedToOtherwise()
{
    mTarget->writeFile(u"mine"_s, "mine");
    Files expected = mSource->files();
    expected.insert(u"mine"_s, "mine");
    QVERIFY(Format::copyProject(mSource->path(), targetPath(), false, nullptr, false, false));
    QCOMPARE(mTarget->files(), expected);
    // Now every file is there already.
    QVERIFY(!Format::copyProject(mSource->path(), targetPath(), false, nullptr, false, false));
    QCOMPARE(mTarget->files(), expected);
}

void TstCopyProject::aProjectIsNotCopiedIntoItself_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("replaceTarget");

    QTest::newRow("itself") << QString() << false;
    QTest::newRow("itself with a slash") << u"/"_s << false;
    QTest::newRow("itself by its binder") << u"/Novel.tavelx"_s << false;
    QTest::newRow("new subfolder") << u"/Copy.tavel"_s << false;
    QTest::newRow("existing subfolder") << u"/Files"_s << false;
    QTest::newRow("deep subfolder") << u"/a/b/c/Copy.tavel"_s << false;
    QTest::newRow("new subfolder, to be replaced") << u"/Copy.tavel"_s << true;
}

void TstCopyProject::aProjectIsNotCopiedIntoItself()
{
    QFETCH(QString, suffix);
    QFETCH(bool, replaceTarget);

    const Files before = mSource->files();
    const QStringList entries = QDir(mSource->path()).entryList();
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(!Format::copyProject(mSource->path(), mSource->path() + suffix, true, nullptr, true,
                                 replaceTarget));
    QCOMPARE(boxes.boxes().size(), 0);
    QCOMPARE(mSource->files(), before);
    QCOMPARE(QDir(mSource->path()).entryList(), entries);
}

void TstCopyProject::aLinkIntoTheProjectIsNoWayAround()
{
    const QString link = mSource->enclosingPath() + u"/link"_s;
    QVERIFY(QFile::link(mSource->path(u"Files"_s), link));
    const Files before = mSource->files();
    QVERIFY(
        !Format::copyProject(mSource->path(), link + u"/Copy.tavel"_s, true, nullptr, true, false));
    QVERIFY(!QFileInfo::exists(link + u"/Copy.tavel"_s));
    QCOMPARE(mSource->files(), before);
}

void TstCopyProject::replacingATargetInsideTheProjectDeletesItFirst()
{
    Files expected = mSource->files();
    mSource->writeFile(u"Copy.tavel/Copy.tavelx"_s, "to be replaced");
    QVERIFY(!Format::copyProject(mSource->path(), mSource->path(u"Copy.tavel"_s), true, nullptr,
                                 true, true));
    QCOMPARE(mSource->files(), expected);
    QVERIFY(!QFileInfo::exists(mSource->path(u"Copy.tavel"_s)));
}

void TstCopyProject::aNameThatBeginsWithTheProjectsNameIsNoSubfolder()
{
    const QString target = mSource->path() + u" copy.tavel"_s;
    QVERIFY(Format::copyProject(mSource->path(), target, true, nullptr, false, false));
    QVERIFY(QFileInfo::exists(target + u"/Novel.tavel copy.tavelx"_s));
}

void TstCopyProject::aMissingProjectIsReportedAndNotCopied()
{
    TVLUnattendedMessageBoxes boxes;
    const QString missing = mSource->enclosingPath() + u"/missing.tavel"_s;
    QVERIFY(!Format::copyProject(missing, targetPath(), true, nullptr, true, false));
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(boxes.boxes().constFirst().text.contains(QDir::toNativeSeparators(missing)));
    QCOMPARE(boxes.boxes().constFirst().icon, QMessageBox::Critical);
    QVERIFY(!QFileInfo::exists(targetPath()));
}

void TstCopyProject::aTargetThatCannotBeMadeIsReported_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("below a regular file") << u"file/Copy.tavel"_s;
    QTest::newRow("a regular file") << u"file"_s;
}

void TstCopyProject::aTargetThatCannotBeMadeIsReported()
{
    QFETCH(QString, target);

    mTarget->writeFile(u"file"_s, "mine");
    const Files before = mTarget->files();
    TVLUnattendedMessageBoxes boxes;
    QVERIFY(
        !Format::copyProject(mSource->path(), mTarget->path(target), true, nullptr, true, false));
    QCOMPARE(boxes.boxes().size(), 1);
    QVERIFY(
        boxes.boxes().constFirst().text.contains(QDir::toNativeSeparators(mTarget->path(target))));
    QCOMPARE(boxes.boxes().constFirst().icon, QMessageBox::Critical);
    QCOMPARE(mTarget->files(), before);
}

void TstCopyProject::aCancelledCopyLeavesAPartialTarget()
{
    const Files before = mSource->files();
    QProgressDialog progress(QString(), u"Stop"_s, 0, 1000);
    progress.setValue(0);
    onProgress(&progress, 12, [&progress] { progress.cancel(); });
    QVERIFY(!Format::copyProject(mSource->path(), targetPath(), true, &progress, true, false));
    QVERIFY(!mTarget->files().isEmpty());
    QVERIFY(mTarget->files().size() < before.size());
    QVERIFY(!QFileInfo::exists(mTarget->binderPath()));
    QCOMPARE(mSource->files(), before);
}

void TstCopyProject::withoutProgressThereIsNoDialog()
{
    const ProgressWatcher watcher;
    QVERIFY(Format::copyProjectProgress(mSource->path(), targetPath(), false, false, false, false,
                                        nullptr));
    QCOMPARE(watcher.mDialogs, 0);
    QCOMPARE(mTarget->files(), mSource->files());
}

void TstCopyProject::progressIsShownInAModalDialog()
{
    QWidget window;
    const ProgressWatcher watcher;
    QVERIFY(Format::copyProjectProgress(mSource->path(), targetPath(), false, false, false, true,
                                        &window));
    QCOMPARE(watcher.mDialogs, 1);
    QCOMPARE(watcher.mTitle, u"Save As"_s);
    QCOMPARE(watcher.mButton, u"Abort Save"_s);
    QCOMPARE(watcher.mMinimum, 0);
    QCOMPARE(watcher.mMaximum, 24);
    QVERIFY(watcher.mIsModal);
    QCOMPARE(watcher.mParent, &window);
    QCOMPARE(mTarget->files(), mSource->files());
    QVERIFY(window.findChildren<QProgressDialog *>().isEmpty());
}

void TstCopyProject::pressingTheButtonOfTheDialogEndsTheCopy()
{
    const ProgressWatcher watcher(10);
    QVERIFY(!Format::copyProjectProgress(mSource->path(), targetPath(), true, true, false, true,
                                         nullptr));
    QCOMPARE(watcher.mDialogs, 1);
    QVERIFY(!mTarget->files().isEmpty());
    QVERIFY(mTarget->files().size() < mSource->files().size());
}

void TstCopyProject::aCopyWithProgressTakesTheSameSteps()
{
    mTarget->writeFile(u"mine"_s, "mine");
    Files expected = mSource->files();
    expected.insert(u"Copy.tavelx"_s, expected.take(u"Novel.tavelx"_s));
    expected.remove(u"Files/user.lock"_s);
    for (const bool showProgress : {false, true}) {
        QVERIFY(Format::copyProjectProgress(mSource->path() + u"/Novel.tavelx"_s,
                                            targetPath() + u"/Copy.tavelx"_s, true, true, true,
                                            showProgress, nullptr));
        QCOMPARE(mTarget->files(), expected);
    }
}

void TstCopyProject::replacingNeverDeletesWhatIsToBeCopied_data()
{
    QTest::addColumn<bool>("isProject");
    QTest::newRow("the project itself") << true;
    QTest::newRow("the folder that holds it") << false;
}

void TstCopyProject::replacingNeverDeletesWhatIsToBeCopied()
{
    QFETCH(const bool, isProject);
    const QString target = isProject ? mSource->path() : mSource->enclosingPath();
    const auto before = mSource->files();
    QVERIFY(!before.isEmpty());
    QVERIFY(
        !TVLProjectFolderFormat::copyProject(mSource->path(), target, false, nullptr, false, true));
    QCOMPARE(mSource->files(), before);
}

void TstCopyProject::aLinkThatLeadsBackEndsTheCopy()
{
    QVERIFY(QFile::link(mSource->path(), mSource->path(u"Files/back"_s)));
    QVERIFY(!TVLProjectFolderFormat::copyProject(mSource->path(), targetPath(), false, nullptr,
                                                 false, false));
    QVERIFY(QFile::remove(mSource->path(u"Files/back"_s)));
}

void TstCopyProject::removingAFolder()
{
    QVERIFY(Format::removeDirectory(QDir(mSource->path(u"Files"_s))));
    QCOMPARE(mSource->files().keys(), (QStringList{u"Icons/\u6f22.png"_s, u"Novel.tavelx"_s}));
    QVERIFY(Format::removeDirectory(QDir(mSource->path(u"Files"_s))));
}

void TstCopyProject::removingAProject_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("folder") << QString();
    QTest::newRow("folder with a slash") << u"/"_s;
    QTest::newRow("binder") << u"/Novel.tavelx"_s;
}

void TstCopyProject::removingAProject()
{
    QFETCH(QString, suffix);

    const QString sibling = mSource->enclosingPath() + u"/Novel.txt"_s;
    QVERIFY(QFile::copy(mSource->binderPath(), sibling));
    mSource->writeFile(u".hidden"_s, "hidden");
    QVERIFY(Format::removeProject(mSource->path() + suffix));
    QVERIFY(!QFileInfo::exists(mSource->path()));
    QVERIFY(QFileInfo::exists(sibling));
}

TVL_TEST(TstCopyProject)
#include "tst_copyproject.moc"
