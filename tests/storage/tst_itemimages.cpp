#include "DocumentFixtures.h"
#include "SnapshotFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPixmap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;
using Files = QMap<QString, QByteArray>;

constexpr int Id = 12;

QImage picture(const QColor &color = Qt::red, int size = 16)
{
    QImage image(size, size / 2, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QImage noise()
{
    QImage image(200, 200, QImage::Format_RGB32);
    quint32 value = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            value = value * 1664525 + 1013904223;
            image.setPixel(x, y, value >> 8);
        }
    }
    return image;
}

QByteArray formatOfFile(const TestProject &project, const QString &file)
{
    QByteArray bytes = project.readFile(file);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer);
}

QImage imageIn(const TestProject &project, const QString &file)
{
    return QImage::fromData(project.readFile(file)).convertToFormat(QImage::Format_RGB32);
}

} // namespace

class TstItemImages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Image items
    void anImageIsWrittenInTheFormatOfItsName_data();
    void anImageIsWrittenInTheFormatOfItsName();
    void theQualityCounts();
    void anImageThatCannotBeComposedLeavesTheOldFile_data();
    void anImageThatCannotBeComposedLeavesTheOldFile();
    void anImageThatCannotBeWrittenIsAFailure();

    // Index cards
    void anIndexCardImageIsKeptBesideTheItem();
    void anIndexCardPixmapIsTheSame();
    void aNullImageRemovesTheFile();
    void anIndexCardImageThatCannotBeWrittenIsAFailure();
    void aMissingIndexCardImageIsNull();

    // Icons
    void iconsAreKept();
    void anIconMayBeCalledAsItsUserLikes_data();
    void anIconMayBeCalledAsItsUserLikes();
    void anIconIsRenamed();
    void anIconIsNeverRenamedToAnothersName();
    void anIconIsRemoved();
    void aNameThatLeadsOutOfTheFolderIsNoIcon_data();
    void aNameThatLeadsOutOfTheFolderIsNoIcon();
    void askingForIconsMakesNoFolder();
    void anIconThatCannotBeWrittenIsAFailure();
};

void TstItemImages::anImageIsWrittenInTheFormatOfItsName_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("png") << u"png"_s << QByteArray("png");
    QTest::newRow("PNG") << u"PNG"_s << QByteArray("png");
    QTest::newRow("bmp") << u"bmp"_s << QByteArray("bmp");
    QTest::newRow("jpg") << u"jpg"_s << QByteArray("jpeg");
}

void TstItemImages::anImageIsWrittenInTheFormatOfItsName()
{
    QFETCH(const QString, extension);
    QFETCH(const QByteArray, format);
    const TestProject project;
    const QString file = u"Files/Docs/12."_s + extension;
    QVERIFY(Format::writeImageFile(project.binderPath(), Id, extension, picture()));
    QCOMPARE(formatOfFile(project, file), format);
    QCOMPARE(imageIn(project, file).size(), picture().size());
    // In place of an older and larger one.
    project.writeFile(file, QByteArray(100000, 'x'));
    QVERIFY(Format::writeImageFile(project.path(), Id, extension, picture()));
    QCOMPARE(imageIn(project, file).size(), picture().size());
    QCOMPARE(project.files().size(), 1);
}

void TstItemImages::theQualityCounts()
{
    const TestProject project;
    QVERIFY(Format::writeImageFile(project.path(), 1, u"jpg"_s, noise(), 100));
    QVERIFY(Format::writeImageFile(project.path(), 2, u"jpg"_s, noise(), 5));
    QVERIFY(project.readFile(u"Files/Docs/1.jpg"_s).size()
            > 2 * project.readFile(u"Files/Docs/2.jpg"_s).size());
}

void TstItemImages::anImageThatCannotBeComposedLeavesTheOldFile_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("isNull");
    QTest::newRow("null image") << u"png"_s << true;
    QTest::newRow("no image format") << u"pdf"_s << false;
    QTest::newRow("no extension") << QString() << false;
}

void TstItemImages::anImageThatCannotBeComposedLeavesTheOldFile()
{
    QFETCH(const QString, extension);
    QFETCH(const bool, isNull);
    const TestProject project;
    const QString file = u"Files/Docs/12."_s + extension;
    project.writeFile(file, "old");
    QVERIFY(!Format::writeImageFile(project.path(), Id, extension, isNull ? QImage() : picture()));
    QCOMPARE(project.files(), (Files{{file, "old"}}));
}

void TstItemImages::anImageThatCannotBeWrittenIsAFailure()
{
    const TestProject project;
    makeUnwritable(project, u"Files/Docs/12.png"_s);
    QVERIFY(!Format::writeImageFile(project.path(), Id, u"png"_s, picture()));
    QVERIFY(QDir().mkpath(project.path(u"Files/Docs/13.png"_s)));
    QVERIFY(!Format::writeImageFile(project.path(), 13, u"png"_s, picture()));
    const TestProject blocked;
    blocked.writeFile(u"Files"_s, "a file");
    QVERIFY(!Format::writeImageFile(blocked.path(), Id, u"png"_s, picture()));
}

void TstItemImages::anIndexCardImageIsKeptBesideTheItem()
{
    const TestProject project;
    const QString file = u"Files/Docs/12_icImage.png"_s;
    QCOMPARE(Format::indexCardImagePath(project.binderPath(), Id, u"png"_s), project.path(file));
    QVERIFY(project.files().isEmpty());
    QVERIFY(Format::setIndexCardImage(project.binderPath(), Id, u"png"_s, picture()));
    QCOMPARE(project.files().keys(), QStringList{file});
    QCOMPARE(Format::indexCardImage(project.binderPath(), Id, u"png"_s)
                 .convertToFormat(QImage::Format_RGB32),
             picture());
    QVERIFY(Format::setIndexCardImage(project.path(), Id, u"png"_s, picture(Qt::blue)));
    QCOMPARE(imageIn(project, file), picture(Qt::blue));
    QVERIFY(Format::indexCardImage(project.path(), Id, u"jpg"_s).isNull());
    QVERIFY(Format::indexCardImage(project.path(), 13, u"png"_s).isNull());
}

void TstItemImages::anIndexCardPixmapIsTheSame()
{
    const TestProject project;
    QVERIFY(
        Format::setIndexCardPixmap(project.path(), Id, u"png"_s, QPixmap::fromImage(picture())));
    QCOMPARE(imageIn(project, u"Files/Docs/12_icImage.png"_s), picture());
    QCOMPARE(Format::indexCardPixmap(project.path(), Id, u"png"_s)
                 .toImage()
                 .convertToFormat(QImage::Format_RGB32),
             picture());
    QVERIFY(Format::setIndexCardPixmap(project.path(), Id, u"png"_s, QPixmap()));
    QVERIFY(Format::indexCardPixmap(project.path(), Id, u"png"_s).isNull());
}

void TstItemImages::aNullImageRemovesTheFile()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12_icImage.jpg"_s, "another format");
    QVERIFY(Format::setIndexCardImage(project.path(), Id, u"png"_s, picture()));
    QVERIFY(Format::setIndexCardImage(project.path(), Id, u"png"_s, QImage()));
    QCOMPARE(project.files().keys(), QStringList{u"Files/Docs/12_icImage.jpg"_s});
    QVERIFY(Format::setIndexCardImage(project.path(), Id, u"png"_s, QImage()));
    project.writeFile(u"Files/Docs/12_icImage.png/file"_s, "in a folder");
    QVERIFY(!Format::setIndexCardImage(project.path(), Id, u"png"_s, QImage()));
}

void TstItemImages::anIndexCardImageThatCannotBeWrittenIsAFailure()
{
    const TestProject project;
    project.writeFile(u"Files/Docs/12_icImage.pdf"_s, "old");
    QVERIFY(!Format::setIndexCardImage(project.path(), Id, u"pdf"_s, picture()));
    QCOMPARE(project.readFile(u"Files/Docs/12_icImage.pdf"_s), "old");
    makeUnwritable(project, u"Files/Docs/12_icImage.png"_s);
    QVERIFY(!Format::setIndexCardImage(project.path(), Id, u"png"_s, picture()));
}

void TstItemImages::aMissingIndexCardImageIsNull()
{
    const TestProject project;
    QVERIFY(Format::indexCardImage(project.path(), Id, u"png"_s).isNull());
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstItemImages::iconsAreKept()
{
    const TestProject project;
    QVERIFY(Format::addIcon(project.binderPath(), u"red.png"_s, picture(Qt::red)));
    QVERIFY(Format::addIcon(project.path(), u"blue.png"_s, picture(Qt::blue)));
    QVERIFY(QDir().mkpath(project.path(u"Icons/folder"_s)));
    QCOMPARE(Format::icons(project.binderPath()), (QStringList{u"blue.png"_s, u"red.png"_s}));
    QCOMPARE(imageIn(project, u"Icons/red.png"_s), picture(Qt::red));
    QCOMPARE(Format::icon(project.binderPath(), u"blue.png"_s)
                 .toImage()
                 .convertToFormat(QImage::Format_RGB32),
             picture(Qt::blue));
    QVERIFY(Format::icon(project.path(), u"green.png"_s).isNull());
}

void TstItemImages::anIconMayBeCalledAsItsUserLikes_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no format") << u"My Icon"_s;
    QTest::newRow("a dot") << u"Version 1.5"_s;
    QTest::newRow("Unicode") << u"\u6f22 \U0001f4d6.png"_s;
    QTest::newRow("two dots") << u"..icon"_s;
}

void TstItemImages::anIconMayBeCalledAsItsUserLikes()
{
    QFETCH(const QString, name);
    const TestProject project;
    QVERIFY(Format::addIcon(project.path(), name, picture()));
    QCOMPARE(formatOfFile(project, u"Icons/"_s + name), QByteArray("png"));
    QCOMPARE(Format::icon(project.path(), name).size(), picture().size());
    QVERIFY(Format::removeIcon(project.path(), name));
    QVERIFY(project.files().isEmpty());
}

void TstItemImages::anIconIsRenamed()
{
    const TestProject project;
    QVERIFY(Format::addIcon(project.path(), u"red.png"_s, picture()));
    const QByteArray content = project.readFile(u"Icons/red.png"_s);
    QVERIFY(Format::renameIcon(project.binderPath(), u"red.png"_s, u"rot.png"_s));
    QCOMPARE(project.files(), (Files{{u"Icons/rot.png"_s, content}}));
    QVERIFY(!Format::renameIcon(project.path(), u"red.png"_s, u"rouge.png"_s));
}

void TstItemImages::anIconIsNeverRenamedToAnothersName()
{
    const TestProject project;
    QVERIFY(Format::addIcon(project.path(), u"red.png"_s, picture(Qt::red)));
    QVERIFY(Format::addIcon(project.path(), u"blue.png"_s, picture(Qt::blue)));
    const Files before = project.files();
    QVERIFY(!Format::renameIcon(project.path(), u"red.png"_s, u"blue.png"_s));
    QCOMPARE(project.files(), before);
}

void TstItemImages::anIconIsRemoved()
{
    const TestProject project;
    QVERIFY(Format::addIcon(project.path(), u"red.png"_s, picture()));
    QVERIFY(Format::removeIcon(project.binderPath(), u"red.png"_s));
    QVERIFY(project.files().isEmpty());
    QVERIFY(!Format::removeIcon(project.path(), u"red.png"_s));
}

void TstItemImages::aNameThatLeadsOutOfTheFolderIsNoIcon_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("the folder itself") << u"."_s;
    QTest::newRow("the folder above") << u".."_s;
    QTest::newRow("a file above") << u"../Novel.tavelx"_s;
    QTest::newRow("a file below") << u"folder/icon.png"_s;
}

void TstItemImages::aNameThatLeadsOutOfTheFolderIsNoIcon()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "binder");
    QVERIFY(Format::addIcon(project.path(), u"red.png"_s, picture()));
    QVERIFY(QDir().mkpath(project.path(u"Icons/folder"_s)));
    const Files before = project.files();
    QVERIFY(!Format::addIcon(project.path(), name, picture()));
    QVERIFY(!Format::removeIcon(project.path(), name));
    QVERIFY(!Format::renameIcon(project.path(), name, u"new.png"_s));
    QVERIFY(!Format::renameIcon(project.path(), u"red.png"_s, name));
    QVERIFY(Format::icon(project.path(), name).isNull());
    QCOMPARE(project.files(), before);
}

void TstItemImages::askingForIconsMakesNoFolder()
{
    const TestProject project;
    QVERIFY(Format::icon(project.path(), u"red.png"_s).isNull());
    QCOMPARE(Format::icons(project.path()), QStringList());
    QVERIFY(!Format::removeIcon(project.path(), u"red.png"_s));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstItemImages::anIconThatCannotBeWrittenIsAFailure()
{
    const TestProject project;
    QVERIFY(!Format::addIcon(project.path(), u"red.png"_s, QImage()));
    QVERIFY(project.files().isEmpty());
    makeUnwritable(project, u"Icons/red.png"_s);
    QVERIFY(!Format::addIcon(project.path(), u"red.png"_s, picture()));
    const TestProject blocked;
    blocked.writeFile(u"Icons"_s, "a file");
    QVERIFY(!Format::addIcon(blocked.path(), u"red.png"_s, picture()));
}

TVL_TEST(TstItemImages)
#include "tst_itemimages.moc"
