#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLGuiUtil.h"
#include "TVLProjectFolderFormat.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString CardFile = u"Files/Docs/3_icImage.png"_s;

QImage imageOf(int width, int height, Qt::GlobalColor color = Qt::red)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/** A saved project whose only text, of id 3, is the item that most is done to. */
struct ImageFixture
{
    ImageFixture()
        : model(project.create())
        , index(firstText(model.get()))
    {
        makeAllOld(model.get());
    }

    [[nodiscard]] TVLProjectNode *node() const { return model->projectNode(index); }

    TestProject project;
    TestModel model;
    QModelIndex index;
};

} // namespace

class TstModelImages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anItemHasNoCardImageAtFirst();
    void aCardImageIsWrittenAtOnce();
    void aCardImageIsThereAfterReopening();
    void aNullImageRemovesTheCardImage();
    void anEqualImageIsWrittenAgain();
    void aCardImageThatCannotBeWrittenChangesNothing();
    void anItemWithoutIdHasNoPlaceForAnImage();
    void cardImagesOfOtherIndexesAreRefused();
    void aCardIsNoLargerThanItsSize_data();
    void aCardIsNoLargerThanItsSize();
    void aCardIsKeptFromTheFirstCall();
    void attributesTakenOverRefreshTheCard_data();
    void attributesTakenOverRefreshTheCard();
    void theItemsOwnFileServesAsCard();
    void aDamagedCardImageGivesWayToTheItemsOwnFile();
    void whatIsAnImage_data();
    void whatIsAnImage();
    void whatCanBeReadAsAnImage_data();
    void whatCanBeReadAsAnImage();
    void theExtensionsOfImagesAreInLowerCase();

    void anItemHasNoIconAtFirst();
    void anItemShowsTheProjectsIcon();
    void anIconMarksTheProject();
    void anIconThatCannotBeAddedMarksNothing();
    void aReplacedIconIsShownAnew();
    void renamingAnIconRenamesItForItsItems();
    void removingAnIconTakesItFromItsItems();
    void anIconThatNobodyHasMarksNothing();
    void anIconWhoseFileStaysKeepsItsItems_data();
    void anIconWhoseFileStaysKeepsItsItems();
    void itemsThatGoMeanwhileAreLeftAlone();
    void anItemWithAFileHasTheIconOfItsKind();
    void tintingAnnouncesEveryItem();
};

void TstModelImages::anItemHasNoCardImageAtFirst()
{
    const ImageFixture f;
    QVERIFY(!f.model->hasIndexCardImage(f.index));
    QVERIFY(f.model->rawDataImage(f.index).isNull());
    QVERIFY(f.model->indexCardPixmap(f.index).isNull());
}

void TstModelImages::aCardImageIsWrittenAtOnce()
{
    const ImageFixture f;
    f.node()->mIndexCardImageFileExtension = u"jpg"_s;
    SignalLog log(f.model.get());
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QVERIFY(isTouched(f.model.get(), f.index));
    QCOMPARE(f.node()->mIndexCardImageFileExtension, u"png"_s);
    QCOMPARE(QImage(f.project.path(CardFile)).size(), QSize(20, 10));
    QVERIFY(f.node()->hasIndexCardPixmap());
    QVERIFY(f.model->hasIndexCardImage(f.index));
    QCOMPARE(f.model->rawDataImage(f.index).size(), QSize(20, 10));
    QCOMPARE(f.model->indexCardPixmap(f.index).toImage().pixelColor(5, 5), QColor(Qt::red));
}

void TstModelImages::aCardImageIsThereAfterReopening()
{
    ImageFixture f;
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QVERIFY(f.model->save());
    f.model.reset();
    const auto model = f.project.open();
    QVERIFY(model);
    QCOMPARE(model->indexCardPixmap(firstText(model.get())).size(), QSize(20, 10));
}

void TstModelImages::aNullImageRemovesTheCardImage()
{
    const ImageFixture f;
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    makeAllOld(f.model.get());
    SignalLog log(f.model.get());
    QVERIFY(f.model->setIndexCardImage(f.index, QImage()));
    QCOMPARE(log.lines(), QStringList({u"data 3"_s}));
    QVERIFY(isTouched(f.model.get(), f.index));
    QVERIFY(!QFileInfo::exists(f.project.path(CardFile)));
    QVERIFY(!f.node()->hasIndexCardPixmap());
    QVERIFY(!f.model->hasIndexCardImage(f.index));
    QVERIFY(f.model->indexCardPixmap(f.index).isNull());
}

void TstModelImages::anEqualImageIsWrittenAgain()
{
    const ImageFixture f;
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QVERIFY(QFile::remove(f.project.path(CardFile)));
    SignalLog log(f.model.get());
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QCOMPARE(log.lines(), QStringList({u"data 3"_s}));
    QVERIFY(f.model->hasIndexCardImage(f.index));
}

void TstModelImages::aCardImageThatCannotBeWrittenChangesNothing()
{
    const ImageFixture f;
    f.node()->mIndexCardImageFileExtension = u"jpg"_s;
    f.node()->setIndexCardPixmap(QPixmap::fromImage(imageOf(5, 5)));
    f.project.writeFile(CardFile + u"/inside"_s, "a folder where the file belongs");
    SignalLog log(f.model.get());
    QVERIFY(!f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QVERIFY(!f.model->setIndexCardImage(f.index, QImage()));
    QCOMPARE(f.node()->mIndexCardImageFileExtension, u"jpg"_s);
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), QSize(5, 5));
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(!isTouched(f.model.get(), f.index));
}

void TstModelImages::anItemWithoutIdHasNoPlaceForAnImage()
{
    const ImageFixture f;
    f.model->clearIndexId(f.index);
    QVERIFY(!f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QVERIFY(!f.model->setIndexCardImage(f.model->rootIndex(), imageOf(20, 10)));
    QVERIFY(!QFileInfo::exists(f.project.path(u"Files/Docs/-1_icImage.png"_s)));
    f.project.writeFile(u"Files/Docs/-1_icImage.png"_s, "x");
    f.node()->mIndexCardImageFileExtension = u"png"_s;
    QVERIFY(!f.model->hasIndexCardImage(f.index));
    QVERIFY(!f.model->isImage(f.node()));
}

void TstModelImages::cardImagesOfOtherIndexesAreRefused()
{
    const ImageFixture f;
    const ImageFixture other;
    QVERIFY(other.model->setIndexCardImage(other.index, imageOf(20, 10)));
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QVERIFY(!f.model->hasIndexCardImage(other.index));
    QVERIFY(f.model->rawDataImage(other.index).isNull());
    QVERIFY(f.model->indexCardPixmap(other.index).isNull());
    QVERIFY(!f.model->setIndexCardImage(other.index, QImage()));
    QVERIFY(other.model->hasIndexCardImage(other.index));
    QVERIFY(!f.model->canDisplayAsImage(other.index));
    QVERIFY(!f.model->isImage(nullptr));
}

void TstModelImages::aCardIsNoLargerThanItsSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("cardSize");
    QTest::newRow("larger") << QSize(1280, 960) << QSize(640, 480);
    QTest::newRow("wider") << QSize(1000, 100) << QSize(640, 64);
    QTest::newRow("higher") << QSize(100, 960) << QSize(50, 480);
    QTest::newRow("as large") << QSize(640, 480) << QSize(640, 480);
    QTest::newRow("smaller") << QSize(3, 2) << QSize(3, 2);
}

void TstModelImages::aCardIsNoLargerThanItsSize()
{
    QFETCH(const QSize, size);
    QFETCH(const QSize, cardSize);
    const ImageFixture f;
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(size.width(), size.height())));
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), cardSize);
    f.node()->clearIndexCardPixmap();
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), cardSize);
    QCOMPARE(f.model->rawDataImage(f.index).size(), size);
}

void TstModelImages::aCardIsKeptFromTheFirstCall()
{
    const ImageFixture f;
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    f.node()->clearIndexCardPixmap();
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), QSize(20, 10));
    QVERIFY(QFile::remove(f.project.path(CardFile)));
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), QSize(20, 10));
    QVERIFY(f.model->rawDataImage(f.index).isNull());
}

void TstModelImages::attributesTakenOverRefreshTheCard_data()
{
    QTest::addColumn<bool>("mobile");
    QTest::newRow("mobile") << true;
    QTest::newRow("desktop") << false;
}

void TstModelImages::attributesTakenOverRefreshTheCard()
{
    QFETCH(const bool, mobile);
    const ImageFixture f;
    QVERIFY(f.model->indexCardPixmap(f.index).isNull());
    // What a merge brings: the file, and the record that knows of it.
    f.project.writeFile(CardFile, {});
    QVERIFY(imageOf(20, 10).save(f.project.path(CardFile)));
    TVLProjectNodeProperties record = f.model->nodeProperties(f.index);
    record.mIndexCardImageFileExtension = u"png"_s;
    QVERIFY(mobile ? f.model->applyMobileAttributes(f.index, record)
                   : f.model->applyDesktopAttributes(f.index, record));
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), QSize(20, 10));
}

void TstModelImages::theItemsOwnFileServesAsCard()
{
    const ImageFixture f;
    f.node()->mFileExtension = u"bmp"_s;
    QVERIFY(TVLProjectFolderFormat::writeImageFile(f.project.path(), 3, u"bmp"_s, imageOf(7, 8)));
    QVERIFY(!f.model->hasIndexCardImage(f.index));
    QCOMPARE(f.model->rawDataImage(f.index).size(), QSize(7, 8));
    QCOMPARE(f.model->indexCardPixmap(f.index).size(), QSize(7, 8));
    QVERIFY(f.model->setIndexCardImage(f.index, imageOf(20, 10)));
    QCOMPARE(f.model->rawDataImage(f.index).size(), QSize(20, 10));
}

void TstModelImages::aDamagedCardImageGivesWayToTheItemsOwnFile()
{
    const ImageFixture f;
    f.node()->mIndexCardImageFileExtension = u"png"_s;
    f.node()->mFileExtension = u"bmp"_s;
    f.project.writeFile(CardFile, "no image");
    QVERIFY(TVLProjectFolderFormat::writeImageFile(f.project.path(), 3, u"bmp"_s, imageOf(7, 8)));
    QVERIFY(f.model->hasIndexCardImage(f.index));
    QCOMPARE(f.model->rawDataImage(f.index).size(), QSize(7, 8));
}

void TstModelImages::whatIsAnImage_data()
{
    QTest::addColumn<QString>("cardExtension");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isImage");
    const QString none;
    QTest::newRow("plain text") << none << none << none << false;
    QTest::newRow("card") << u"png"_s << none << u"3_icImage.png"_s << true;
    QTest::newRow("card in capitals") << u"PNG"_s << none << u"3_icImage.PNG"_s << true;
    QTest::newRow("card without file") << u"png"_s << none << none << false;
    QTest::newRow("card of another kind") << u"txt"_s << none << u"3_icImage.txt"_s << false;
    QTest::newRow("image") << none << u"jpg"_s << u"3.jpg"_s << true;
    QTest::newRow("image in capitals") << none << u"TIFF"_s << u"3.TIFF"_s << true;
    QTest::newRow("image without file") << none << u"jpg"_s << none << false;
    QTest::newRow("PDF") << none << u"pdf"_s << u"3.pdf"_s << false;
    QTest::newRow("PDF with a card") << u"png"_s << u"pdf"_s << u"3_icImage.png"_s << true;
}

void TstModelImages::whatIsAnImage()
{
    QFETCH(const QString, file);
    QFETCH(const QString, cardExtension);
    QFETCH(const QString, extension);
    const ImageFixture f;
    f.node()->mIndexCardImageFileExtension = cardExtension;
    f.node()->mFileExtension = extension;
    if (!file.isEmpty())
        f.project.writeFile(u"Files/Docs/"_s + file, "x");
    QTEST(f.model->isImage(f.node()), "isImage");
    QTEST(f.model->imageIndexes(f.model->draftFolder()) == QModelIndexList({f.index}), "isImage");
}

void TstModelImages::whatCanBeReadAsAnImage_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("canDisplay");
    QTest::newRow("image") << int(TVL::Image) << u"png"_s << true;
    QTest::newRow("image in capitals") << int(TVL::Image) << u"PNG"_s << true;
    QTest::newRow("other file") << int(TVL::Other) << u"jpg"_s << true;
    QTest::newRow("image that nobody reads") << int(TVL::Image) << u"xyz"_s << false;
    QTest::newRow("image without a file") << int(TVL::Image) << QString() << false;
    QTest::newRow("text") << int(TVL::Text) << u"png"_s << false;
    QTest::newRow("PDF") << int(TVL::PDF) << u"png"_s << false;
}

void TstModelImages::whatCanBeReadAsAnImage()
{
    QFETCH(const int, type);
    QFETCH(const QString, extension);
    const auto model = blankModel();
    const QModelIndex index = firstText(model.get());
    model->projectNode(index)->mNodeType = TVL::NodeType(type);
    model->projectNode(index)->mFileExtension = extension;
    QTEST(model->canDisplayAsImage(index), "canDisplay");
}

void TstModelImages::theExtensionsOfImagesAreInLowerCase()
{
    for (const QStringList &extensions :
         {TVL::displayImageFormats(), TVLGuiUtil::readImageFormats()}) {
        QVERIFY(extensions.contains(u"png"_s));
        QVERIFY(extensions.contains(u"jpg"_s));
        QVERIFY(extensions.contains(u"jpeg"_s));
        QVERIFY(!extensions.contains(u"pdf"_s));
        for (const QString &extension : extensions)
            QCOMPARE(extension, extension.toLower());
    }
    QVERIFY(TVL::displayImageFormats().contains(u"tiff"_s));
}

void TstModelImages::anItemHasNoIconAtFirst()
{
    const ImageFixture f;
    QVERIFY(f.model->icon(f.index).isNull());
    QVERIFY(f.model->icon(f.model->rootIndex()).isNull());
    QCOMPARE(f.model->customIconNames(), QStringList());
    QVERIFY(f.model->customIcon(u"Star.png"_s).isNull());
    QVERIFY(f.model->customIcon(QString()).isNull());
}

void TstModelImages::anItemShowsTheProjectsIcon()
{
    const ImageFixture f;
    const ImageFixture other;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QCOMPARE(f.model->customIconNames(), QStringList({u"Star.png"_s}));
    QCOMPARE(f.model->customIcon(u"Star.png"_s).size(), QSize(16, 16));
    QVERIFY(f.model->setCustomIcon(f.index, u"Star.png"_s));
    QCOMPARE(f.model->icon(f.index).pixmap(16).toImage().pixelColor(3, 3), QColor(Qt::red));
    QVERIFY(f.model->setCustomIcon(f.index, u"Moon.png"_s));
    QVERIFY(f.model->icon(f.index).isNull());
    QVERIFY(other.model->icon(f.index).isNull());
}

void TstModelImages::anIconMarksTheProject()
{
    const ImageFixture f;
    SignalLog log(f.model.get());
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QCOMPARE(log.lines(), QStringList({u"modified"_s}));
    QCOMPARE(touchedIds(f.model.get()), QList<int>());
}

void TstModelImages::anIconThatCannotBeAddedMarksNothing()
{
    const ImageFixture f;
    f.project.writeFile(u"Icons"_s, "a file");
    QVERIFY(!f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QVERIFY(!f.model->addCustomIcon(u"../Star.png"_s, imageOf(16, 16)));
    QVERIFY(!f.model->isModified());
}

void TstModelImages::aReplacedIconIsShownAnew()
{
    const ImageFixture f;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QCOMPARE(f.model->customIcon(u"Star.png"_s).size(), QSize(16, 16));
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(32, 32)));
    QCOMPARE(f.model->customIcon(u"Star.png"_s).size(), QSize(32, 32));
}

void TstModelImages::renamingAnIconRenamesItForItsItems()
{
    const ImageFixture f;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    addTree(f.model.get(), f.model->researchFolder(), u"a(b) c"_s);
    for (const QString &title : {u"a"_s, u"b"_s})
        f.model->setCustomIcon(itemTitled(f.model.get(), title), u"Star.png"_s);
    f.model->setCustomIcon(itemTitled(f.model.get(), u"c"_s), u"Moon.png"_s);
    QVERIFY(!f.model->customIcon(u"Star.png"_s).isNull());
    makeAllOld(f.model.get());
    QVERIFY(f.model->save());
    SignalLog log(f.model.get());
    QVERIFY(f.model->renameCustomIcon(u"Star.png"_s, u"Sun.png"_s));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 4"_s, u"data 5"_s}));
    QCOMPARE(touchedIds(f.model.get()), QList<int>({4, 5}));
    QCOMPARE(f.model->projectNode(f.model->index(5))->mIconFileName, u"Sun.png"_s);
    QCOMPARE(f.model->projectNode(f.model->index(6))->mIconFileName, u"Moon.png"_s);
    QCOMPARE(f.model->customIconNames(), QStringList({u"Sun.png"_s}));
    QVERIFY(f.model->customIcon(u"Star.png"_s).isNull());
    QVERIFY(!f.model->icon(f.model->index(4)).isNull());
}

void TstModelImages::removingAnIconTakesItFromItsItems()
{
    const ImageFixture f;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QVERIFY(f.model->setCustomIcon(f.index, u"Star.png"_s));
    QVERIFY(!f.model->icon(f.index).isNull());
    makeAllOld(f.model.get());
    QVERIFY(f.model->save());
    SignalLog log(f.model.get());
    QVERIFY(f.model->removeCustomIcon(u"Star.png"_s));
    QCOMPARE(log.lines(), QStringList({u"modified"_s, u"data 3"_s}));
    QCOMPARE(touchedIds(f.model.get()), QList<int>({3}));
    QCOMPARE(f.node()->mIconFileName, QString());
    QVERIFY(f.model->icon(f.index).isNull());
    QVERIFY(f.model->customIcon(u"Star.png"_s).isNull());
}

void TstModelImages::anIconThatNobodyHasMarksNothing()
{
    const ImageFixture f;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QVERIFY(f.model->save());
    QVERIFY(f.model->renameCustomIcon(u"Star.png"_s, u"Sun.png"_s));
    QVERIFY(f.model->removeCustomIcon(u"Sun.png"_s));
    QVERIFY(!f.model->isModified());
}

void TstModelImages::anIconWhoseFileStaysKeepsItsItems_data()
{
    QTest::addColumn<QString>("newName"); ///< Empty for a removal.
    QTest::newRow("rename to one that is there") << u"Moon.png"_s;
    QTest::newRow("rename to a path") << u"../Star.png"_s;
    QTest::newRow("removal") << QString();
}

void TstModelImages::anIconWhoseFileStaysKeepsItsItems()
{
    QFETCH(const QString, newName);
    const ImageFixture f;
    if (!newName.isEmpty())
        QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    QVERIFY(f.model->addCustomIcon(u"Moon.png"_s, imageOf(8, 8)));
    QVERIFY(f.model->setCustomIcon(f.index, u"Star.png"_s));
    makeAllOld(f.model.get());
    QVERIFY(f.model->save());
    QVERIFY(newName.isEmpty() ? !f.model->removeCustomIcon(u"Star.png"_s)
                              : !f.model->renameCustomIcon(u"Star.png"_s, newName));
    QCOMPARE(f.node()->mIconFileName, u"Star.png"_s);
    QVERIFY(!isTouched(f.model.get(), f.index));
    QVERIFY(!f.model->isModified());
    QCOMPARE(f.model->customIcon(u"Moon.png"_s).size(), QSize(8, 8));
}

void TstModelImages::itemsThatGoMeanwhileAreLeftAlone()
{
    const ImageFixture f;
    QVERIFY(f.model->addCustomIcon(u"Star.png"_s, imageOf(16, 16)));
    addTree(f.model.get(), f.model->researchFolder(), u"a(b) c"_s);
    for (int id = 4; id <= 6; ++id)
        f.model->setCustomIcon(f.model->index(id), u"Star.png"_s);
    connect(f.model.get(), &TVLProjectModel::dataChanged, this, [&](const QModelIndex &index) {
        if (f.model->nodeIdentity(index) == 4)
            f.model->removeChildrenForIndex(index);
    });
    QVERIFY(f.model->removeCustomIcon(u"Star.png"_s));
    QCOMPARE(f.model->rowCount(f.model->index(4)), 0);
    QCOMPARE(f.model->projectNode(f.model->index(6))->mIconFileName, QString());
}

void TstModelImages::anItemWithAFileHasTheIconOfItsKind()
{
    const ImageFixture f;
    f.node()->mFileExtension = u"pdf"_s;
    // Without its file it has the icon of any file.
    QVERIFY(!f.model->icon(f.index).isNull());
    f.project.writeFile(u"Files/Docs/3.pdf"_s, "pdf");
    QVERIFY(!f.model->icon(f.index).isNull());
    const ImageFixture other;
    QVERIFY(other.model->icon(f.index).isNull());
}

void TstModelImages::tintingAnnouncesEveryItem()
{
    const ImageFixture f;
    addTree(f.model.get(), f.model->researchFolder(), u"a(b) c"_s);
    QVERIFY(f.model->save());
    makeAllOld(f.model.get());
    QVERIFY(!f.model->tintIcons());
    for (const bool tint : {true, true, false}) {
        SignalLog log(f.model.get());
        f.model->setTintIcons(tint);
        QCOMPARE(f.model->tintIcons(), tint);
        QCOMPARE(log.lines(),
                 QStringList({u"data 0"_s, u"data 3"_s, u"data 1"_s, u"data 4"_s, u"data 5"_s,
                              u"data 6"_s, u"data 2"_s}));
    }
    QVERIFY(!f.model->isModified());
    QCOMPARE(touchedIds(f.model.get()), QList<int>());
}

TVL_TEST(TstModelImages)
#include "tst_modelimages.moc"
