#include "TestMain.h"

#include "TVLGuiUtil.h"
#include "TVLUnattendedMessageBoxes.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace Qt::StringLiterals;

// What can't be written or read is made by wrong kinds of entries and not by permissions, which
// don't stop the superuser.
class TstGuiUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aLocationIsWritable_data();
    void aLocationIsWritable();
    void aLocationIsReadable_data();
    void aLocationIsReadable();
    void theAnswerFollowsTheFileSystem();
    void permissionsCount();
    void aRefusalIsShownOnRequest_data();
    void aRefusalIsShownOnRequest();
    void nothingIsShownWhenAllIsWell();
    void aMoveIsAllowedWhereItChangesSomething_data();
    void aMoveIsAllowedWhereItChangesSomething();
    void otherActionsThanMovesAreAllowedAnywhere();
    void nothingThatIsNoIndexMayBeMoved();
    void imagesThatAreWrittenAreReadToo();

private:
    [[nodiscard]] QString path(const QString &name) const
    {
        return name.isEmpty() ? QString() : mFolder->filePath(name);
    }
    [[nodiscard]] QStringList entries() const;

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<TVLUnattendedMessageBoxes> mMessageBoxes;
};

void TstGuiUtil::init()
{
    mFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(mFolder->path()).mkpath(u"folder/inner"_s));
    QFile file(path(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(path(u"folder"_s), path(u"link to folder"_s)));
    QVERIFY(QFile::link(path(u"file"_s), path(u"link to file"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dead link"_s)));
    mMessageBoxes = std::make_unique<TVLUnattendedMessageBoxes>();
}

void TstGuiUtil::cleanup()
{
    mMessageBoxes.reset();
    mFolder.reset();
}

QStringList TstGuiUtil::entries() const
{
    QStringList paths;
    QDirIterator all(mFolder->path(), QDir::AllEntries | QDir::Hidden | QDir::System,
                     QDirIterator::Subdirectories);
    while (all.hasNext())
        paths += all.next();
    paths.sort();
    return paths;
}

void TstGuiUtil::aLocationIsWritable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("asFolder");
    QTest::addColumn<bool>("asFile");

    QTest::newRow("empty") << QString() << false << false;
    QTest::newRow("folder") << u"folder"_s << true << false;
    QTest::newRow("folder with slash") << u"folder/"_s << true << false;
    QTest::newRow("file") << u"file"_s << false << true;
    QTest::newRow("link to a folder") << u"link to folder"_s << true << false;
    QTest::newRow("link to a file") << u"link to file"_s << false << true;
    QTest::newRow("dead link") << u"dead link"_s << false << true;
    QTest::newRow("in a folder") << u"folder/new"_s << true << true;
    QTest::newRow("far below a folder") << u"folder/a/b/c"_s << true << true;
    QTest::newRow("beside a folder that doesn't exist") << u"folder/a/../b"_s << true << true;
    QTest::newRow("below a file") << u"file/new"_s << false << false;
    QTest::newRow("far below a file") << u"file/a/b/c"_s << false << false;
    QTest::newRow("below a dead link") << u"dead link/new"_s << false << false;
}

void TstGuiUtil::aLocationIsWritable()
{
    QFETCH(QString, name);
    const QStringList before = entries();
    QTEST(TVLGuiUtil::CanWriteLocation(path(name), true, false, nullptr), "asFolder");
    QTEST(TVLGuiUtil::CanWriteLocation(path(name), false, false, nullptr), "asFile");
    QCOMPARE(entries(), before);
    QVERIFY(mMessageBoxes->boxes().isEmpty());
}

void TstGuiUtil::aLocationIsReadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isReadable");

    QTest::newRow("empty") << QString() << false;
    QTest::newRow("folder") << u"folder"_s << true;
    QTest::newRow("file") << u"file"_s << true;
    QTest::newRow("link to a folder") << u"link to folder"_s << true;
    QTest::newRow("link to a file") << u"link to file"_s << true;
    QTest::newRow("dead link") << u"dead link"_s << false;
    QTest::newRow("nothing") << u"folder/new"_s << false;
    QTest::newRow("below a file") << u"file/new"_s << false;
}

void TstGuiUtil::aLocationIsReadable()
{
    QFETCH(QString, name);
    QTEST(TVLGuiUtil::CanReadLocation(path(name), false, nullptr), "isReadable");
    QVERIFY(mMessageBoxes->boxes().isEmpty());
}

void TstGuiUtil::theAnswerFollowsTheFileSystem()
{
    const QString inner = path(u"folder/inner"_s);
    QVERIFY(TVLGuiUtil::CanReadLocation(inner, false, nullptr));
    QVERIFY(TVLGuiUtil::CanWriteLocation(inner, true, false, nullptr));

    QVERIFY(QDir().rmdir(inner));
    QVERIFY(!TVLGuiUtil::CanReadLocation(inner, false, nullptr));

    QFile file(inner);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(TVLGuiUtil::CanReadLocation(inner, false, nullptr));
    QVERIFY(!TVLGuiUtil::CanWriteLocation(inner, true, false, nullptr));
}

void TstGuiUtil::permissionsCount()
{
    const QString folder = path(u"folder"_s);
    const QString file = path(u"file"_s);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    QFile probe(file);
    if (probe.open(QIODevice::ReadWrite))
        QSKIP("This user may write to everything.");

    QVERIFY(!TVLGuiUtil::CanWriteLocation(folder, true, false, nullptr));
    QVERIFY(!TVLGuiUtil::CanWriteLocation(folder + u"/new"_s, true, false, nullptr));
    QVERIFY(!TVLGuiUtil::CanWriteLocation(folder + u"/new"_s, false, false, nullptr));
    QVERIFY(!TVLGuiUtil::CanWriteLocation(file, false, false, nullptr));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void TstGuiUtil::aRefusalIsShownOnRequest_data()
{
    QTest::addColumn<bool>("isWrite");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");

    const QString writeTitle = u"Write Error"_s;
    const QString writeText = u"Cannot write to the location: '%1'"_s;
    const QString readTitle = u"Read Error"_s;
    const QString readText = u"Cannot read the location: '%1'"_s;
    QTest::newRow("write") << true << u"file/new"_s << writeTitle << writeText;
    QTest::newRow("write to an empty path") << true << QString() << writeTitle << writeText;
    QTest::newRow("read") << false << u"missing"_s << readTitle << readText;
    QTest::newRow("read an empty path") << false << QString() << readTitle << readText;
    QTest::newRow("read what looks like markup")
        << false << u"<b>bold</b>"_s << readTitle << readText;
    QTest::newRow("read what looks like a place") << false << u"%1 %2"_s << readTitle << readText;
}

void TstGuiUtil::aRefusalIsShownOnRequest()
{
    QFETCH(bool, isWrite);
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(QString, text);
    const QString location = path(name);
    QWidget window;
    bool isModal = false;
    Qt::TextFormat format = Qt::AutoText;
    connect(mMessageBoxes.get(), &TVLUnattendedMessageBoxes::answered, &window, [&] {
        if (const auto *box = window.findChild<QMessageBox *>()) {
            isModal = box->isModal();
            format = box->textFormat();
        }
    });

    const bool result = isWrite ? TVLGuiUtil::CanWriteLocation(location, true, true, &window)
                                : TVLGuiUtil::CanReadLocation(location, true, &window);
    QVERIFY(!result);
    const auto boxes = mMessageBoxes->takeBoxes();
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes.constFirst().title, title);
    QCOMPARE(boxes.constFirst().text, text.arg(location));
    QVERIFY(!boxes.constFirst().informativeText.isEmpty());
    QCOMPARE(boxes.constFirst().icon, QMessageBox::Critical);
    QVERIFY(isModal);
    QCOMPARE(format, Qt::PlainText);
}

void TstGuiUtil::nothingIsShownWhenAllIsWell()
{
    const QString folder = path(u"folder"_s);
    QVERIFY(TVLGuiUtil::CanWriteLocation(folder, true, true, nullptr));
    QVERIFY(TVLGuiUtil::CanWriteLocation(path(u"file"_s), false, true, nullptr));
    QVERIFY(TVLGuiUtil::CanReadLocation(folder, true, nullptr));
    QVERIFY(mMessageBoxes->boxes().isEmpty());
}

void TstGuiUtil::aMoveIsAllowedWhereItChangesSomething_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isAllowed");
    // The tree is a b(c d(e)) f, and an empty target is the top level.
    QTest::newRow("on itself") << u"b"_s << u"b"_s << -1 << false;
    QTest::newRow("into itself") << u"b"_s << u"b"_s << 1 << false;
    QTest::newRow("into its child") << u"b"_s << u"d"_s << 0 << false;
    QTest::newRow("far below itself") << u"b"_s << u"e"_s << 0 << false;
    QTest::newRow("before itself") << u"b"_s << QString() << 1 << false;
    QTest::newRow("behind itself") << u"b"_s << QString() << 2 << false;
    QTest::newRow("before itself below another") << u"d"_s << u"b"_s << 1 << false;
    QTest::newRow("the last to the end") << u"f"_s << QString() << -1 << false;
    QTest::newRow("the last of another to the end") << u"d"_s << u"b"_s << -1 << false;
    QTest::newRow("up") << u"b"_s << QString() << 0 << true;
    QTest::newRow("down") << u"b"_s << QString() << 3 << true;
    QTest::newRow("to the end") << u"a"_s << QString() << -1 << true;
    QTest::newRow("up in another") << u"d"_s << u"b"_s << 0 << true;
    QTest::newRow("to the end of another") << u"c"_s << u"b"_s << -1 << true;
    QTest::newRow("to its own row elsewhere") << u"c"_s << QString() << 0 << true;
    QTest::newRow("into its grandparent") << u"e"_s << u"b"_s << 1 << true;
    QTest::newRow("into a sibling") << u"a"_s << u"f"_s << 0 << true;
    QTest::newRow("out to the top") << u"e"_s << QString() << 1 << true;
}

namespace {

/** The tree a b(c d(e)) f. */
std::unique_ptr<QStandardItemModel> smallTree()
{
    auto model = std::make_unique<QStandardItemModel>();
    auto *const b = new QStandardItem(u"b"_s);
    auto *const d = new QStandardItem(u"d"_s);
    model->appendRow(new QStandardItem(u"a"_s));
    model->appendRow(b);
    model->appendRow(new QStandardItem(u"f"_s));
    b->appendRow(new QStandardItem(u"c"_s));
    b->appendRow(d);
    d->appendRow(new QStandardItem(u"e"_s));
    return model;
}

QModelIndex titled(const QStandardItemModel &model, const QString &title)
{
    const QList<QStandardItem *> found =
        model.findItems(title, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.constFirst()->index();
}

} // namespace

void TstGuiUtil::aMoveIsAllowedWhereItChangesSomething()
{
    QFETCH(const QString, source);
    QFETCH(const QString, target);
    QFETCH(const int, row);
    const auto model = smallTree();
    const QModelIndex index = titled(*model, source);
    QTEST(TVLGuiUtil::allowMove(index, index.parent(), titled(*model, target), row, Qt::MoveAction),
          "isAllowed");
}

void TstGuiUtil::otherActionsThanMovesAreAllowedAnywhere()
{
    const auto model = smallTree();
    const QModelIndex b = titled(*model, u"b"_s);
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
        QVERIFY(TVLGuiUtil::allowMove(b, b.parent(), b, 0, action));
        QVERIFY(TVLGuiUtil::allowMove(b, b.parent(), QModelIndex(), 1, action));
    }
}

void TstGuiUtil::nothingThatIsNoIndexMayBeMoved()
{
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::MoveAction})
        QVERIFY(!TVLGuiUtil::allowMove(QModelIndex(), QModelIndex(), QModelIndex(), 0, action));
}

void TstGuiUtil::imagesThatAreWrittenAreReadToo()
{
    const QStringList both = TVLGuiUtil::readWriteImageFormats();
    QVERIFY(both.contains(u"png"_s) && both.contains(u"jpg"_s));
    // What Qt only reads.
    QVERIFY(TVLGuiUtil::readImageFormats().contains(u"gif"_s) && !both.contains(u"gif"_s));
    for (const QString &extension : both)
        QVERIFY(TVLGuiUtil::readImageFormats().contains(extension));
}

TVL_TEST(TstGuiUtil)

#include "tst_guiutil.moc"
