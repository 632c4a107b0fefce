#include "ModelChecks.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLProjectFolderFormat.h"
#include "TvlCore.h"

#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QPrinter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Model = TVLProjectModel;

const QString ModeFile = u"Settings/scriptformat.xml"_s;

TVLScriptMode modeCalled(const QString &title)
{
    TVLScriptMode mode = TVLScriptMode::factoryDefaults();
    mode.mTitle = title;
    return mode;
}

/** A title or a name of the project: its accessors and the property that it lies in. */
struct TextValue
{
    const char *property;
    QString (Model::*get)() const;
    void (Model::*set)(const QString &);
};

const TextValue TextValues[] = {
    {"ProjectTitle", &Model::projectTitle, &Model::setProjectTitle},
    {"AbbreviatedTitle", &Model::projectAbbreviatedTitle, &Model::setProjectAbbreviatedTitle},
    {"FullName", &Model::authorFullName, &Model::setAuthorFullName},
    {"LastName", &Model::authorSurname, &Model::setAuthorSurname},
    {"FirstName", &Model::authorForename, &Model::setAuthorForename},
};

/** Tells whether it has been deleted. */
class WatchedPrinter : public QPrinter
{
public:
    explicit WatchedPrinter(bool *isDeleted)
        : mIsDeleted(isDeleted)
    {
    }
    ~WatchedPrinter() override { *mIsDeleted = true; }
    Q_DISABLE_COPY_MOVE(WatchedPrinter)

private:
    bool *mIsDeleted;
};

} // namespace

class TstProjectValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDefaultsComeFromTheProjectAndTheUser();
    void titlesAndNamesAreDynamicProperties_data();
    void titlesAndNamesAreDynamicProperties();
    void theFolderGivesTheDirectoryName();
    void aProjectWithoutNotesSaysSo();

    void thePrinterIsMadeOnce();
    void aPrinterIsTakenOver();
    void thePageIsThatOfThePrinter();
    void aPageWithoutAreaHasAFallback();

    void thereIsNoBackdropAtFirst();
    void aBackdropIsAnItemOrAFile_data();
    void aBackdropIsAnItemOrAFile();
    void anEqualBackdropHasNoEffect();
    void anItemAndAFileOfThatNameDiffer();
    void theBackdropOfAnItemIsItsImage();
    void theBackdropOfAFileIsRead();
    void aBackdropThatIsNotThereIsNull();

    void targetsAreStoredInAnyCase();
    void infoAndDeviceMarkNothing();

    void theFormatVersionGoesWithTheBinderVersion_data();
    void theFormatVersionGoesWithTheBinderVersion();
    void theVersionFileFollows();
    void aMissingVersionFileIsNotMade();
    void anUnsavedProjectGetsNoFolder();
    void anEqualVersionWritesNothing();
    void aMobileProjectLeavesTheVersionFile();
    void aHigherVersionInTheFileStays();

    void aNewProjectWritesScreenplays();
    void aScriptModeIsWrittenAndAnnounced();
    void anEqualScriptModeIsWrittenToo();
    void aScriptModeComesBack();
    void aDamagedScriptModeIsLeftAlone();
    void aScriptModeThatCannotBeWrittenIsKeptInMemory();
};

void TstProjectValues::theDefaultsComeFromTheProjectAndTheUser()
{
    const auto model = blankModel();
    QCOMPARE(model->defaultProjectTitle(), u"Novel"_s);
    QCOMPARE(model->defaultProjectAbbreviatedTitle(), u"Novel"_s);
    QCOMPARE(Model::defaultAuthorFullName(), TvlCore::systemUsername());
    QCOMPARE(Model::defaultAuthorSurname(), QString());
    QCOMPARE(Model::defaultAuthorForename(), QString());
    // They are only offered.
    for (const TextValue &value : TextValues)
        QCOMPARE((model.get()->*value.get)(), QString());
}

void TstProjectValues::titlesAndNamesAreDynamicProperties_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(TextValues)); ++row)
        QTest::newRow(TextValues[row].property) << row;
}

void TstProjectValues::titlesAndNamesAreDynamicProperties()
{
    QFETCH(const int, row);
    const TextValue &value = TextValues[row];
    const auto model = blankModel();
    Model *m = model.get();
    m->setProperty(value.property, u"from the binder"_s);
    QCOMPARE((m->*value.get)(), u"from the binder"_s);
    QVERIFY(!m->isModified());

    const QSignalSpy modifiedSpy(m, &Model::modifiedChanged);
    (m->*value.set)(u"from the binder"_s);
    QCOMPARE(modifiedSpy.count(), 0);
    (m->*value.set)(u"Überschrift"_s);
    QCOMPARE(m->property(value.property), QVariant(u"Überschrift"_s));
    QCOMPARE((m->*value.get)(), u"Überschrift"_s);
    QCOMPARE(modifiedSpy.count(), 1);
    (m->*value.set)(QString());
    QCOMPARE((m->*value.get)(), QString());
    for (const TextValue &other : TextValues)
        QVERIFY(&other == &value || !m->property(other.property).isValid());
}

void TstProjectValues::theFolderGivesTheDirectoryName()
{
    const TestProject project(u"My.Novel"_s);
    const auto model = project.create();
    QCOMPARE(model->directoryName(), u"My.Novel"_s);
    model->setName(u"Other"_s);
    QCOMPARE(model->directoryName(), u"My.Novel"_s);
    QCOMPARE(model->defaultProjectTitle(), u"Other"_s);
}

void TstProjectValues::aProjectWithoutNotesSaysSo()
{
    QVERIFY(!emptyModel()->hasProjectNotes());
    QVERIFY(blankModel()->hasProjectNotes());
}

void TstProjectValues::thePrinterIsMadeOnce()
{
    const auto model = blankModel();
    QPrinter *printer = model->printer();
    QVERIFY(printer);
    QCOMPARE(model->printer(), printer);
    QCOMPARE(printer->resolution(), QPrinter(QPrinter::PrinterResolution).resolution());
    QVERIFY(!model->isModified());
}

void TstProjectValues::aPrinterIsTakenOver()
{
    bool isFirstDeleted = false;
    bool isSecondDeleted = false;
    {
        const auto model = blankModel();
        auto *first = new WatchedPrinter(&isFirstDeleted);
        model->setPrinter(first);
        QCOMPARE(model->printer(), first);
        model->setPrinter(first);
        QVERIFY(!isFirstDeleted);
        model->setPrinter(new WatchedPrinter(&isSecondDeleted));
        QVERIFY(isFirstDeleted);
        QVERIFY(!isSecondDeleted);
        QVERIFY(!model->isModified());
    }
    QVERIFY(isSecondDeleted);

    const auto model = blankModel();
    model->setPrinter(new WatchedPrinter(&isFirstDeleted));
    isFirstDeleted = false;
    model->setPrinter(nullptr);
    QVERIFY(isFirstDeleted);
    QVERIFY(model->printer());
}

void TstProjectValues::thePageIsThatOfThePrinter()
{
    const auto model = blankModel();
    auto *printer = new QPrinter(QPrinter::PrinterResolution);
    printer->setPageSize(QPageSize(QPageSize::A5));
    printer->setPageMargins(QMarginsF(72, 36, 18, 9), QPageLayout::Point);
    model->setPrinter(printer);
    const QRectF page = printer->pageLayout().paintRect(QPageLayout::Point);
    QVERIFY(qAbs(model->printerPageRect().width() - page.width()) < 1);
    QVERIFY(qAbs(model->printerPageRect().left() - 72) < 1);
    QCOMPARE(model->printerPageSize(), model->printerPageRect().size());
}

void TstProjectValues::aPageWithoutAreaHasAFallback()
{
    const auto model = blankModel();
    auto *printer = new QPrinter(QPrinter::PrinterResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setFullPage(false);
    const double width = printer->pageLayout().fullRect(QPageLayout::Point).width();
    QVERIFY(printer->setPageMargins(QMarginsF(width, 0, 0, 0), QPageLayout::Point));
    model->setPrinter(printer);
    QVERIFY(model->printerPageRect().width() <= 0);
    QCOMPARE(model->printerPageSize(), QSizeF(594.72, 841.68));
}

void TstProjectValues::thereIsNoBackdropAtFirst()
{
    const auto model = blankModel();
    QVERIFY(!model->fullScreenBackdrop().isValid());
    QVERIFY(!model->fullScreenBackdropIsNodeId());
    QCOMPARE(model->fullScreenBackdropNodeId(), -1);
    QVERIFY(model->fullScreenBackdropPixmap().isNull());
    model->clearFullScreenBackdrop();
    QVERIFY(!model->isModified());
}

void TstProjectValues::aBackdropIsAnItemOrAFile_data()
{
    QTest::addColumn<QVariant>("given");
    QTest::addColumn<QVariant>("backdrop");
    QTest::addColumn<int>("nodeId");
    QTest::newRow("item") << QVariant(7) << QVariant(7) << 7;
    QTest::newRow("item 0") << QVariant(0) << QVariant(0) << 0;
    QTest::newRow("no item") << QVariant(-1) << QVariant() << -1;
    QTest::newRow("file") << QVariant(u"/a/b.png"_s) << QVariant(u"/a/b.png"_s) << -1;
    QTest::newRow("number as a file") << QVariant(u"7"_s) << QVariant(u"7"_s) << -1;
    QTest::newRow("no file") << QVariant(QString()) << QVariant() << -1;
}

void TstProjectValues::aBackdropIsAnItemOrAFile()
{
    QFETCH(const QVariant, given);
    QFETCH(const QVariant, backdrop);
    QFETCH(const int, nodeId);
    const auto model = blankModel();
    if (given.typeId() == QMetaType::Int)
        model->setFullScreenBackdrop(given.toInt());
    else
        model->setFullScreenBackdrop(given.toString());
    QCOMPARE(model->fullScreenBackdrop(), backdrop);
    QCOMPARE(model->fullScreenBackdropIsNodeId(), nodeId >= 0);
    QCOMPARE(model->fullScreenBackdropNodeId(), nodeId);
    QCOMPARE(model->isModified(), backdrop.isValid());
    model->clearFullScreenBackdrop();
    QVERIFY(!model->fullScreenBackdrop().isValid());

    const auto other = blankModel();
    other->setFullScreenBackdrop(backdrop);
    QCOMPARE(other->fullScreenBackdrop(), backdrop);
    QCOMPARE(other->isModified(), backdrop.isValid());
}

void TstProjectValues::anEqualBackdropHasNoEffect()
{
    const TestProject project;
    const auto model = project.create();
    model->setFullScreenBackdrop(3);
    QVERIFY(model->save());
    model->setFullScreenBackdrop(3);
    model->setFullScreenBackdrop(QVariant(3));
    QVERIFY(!model->isModified());
    model->clearFullScreenBackdrop();
    QVERIFY(model->isModified());
}

void TstProjectValues::anItemAndAFileOfThatNameDiffer()
{
    const TestProject project;
    const auto model = project.create();
    model->setFullScreenBackdrop(3);
    QVERIFY(model->save());
    model->setFullScreenBackdrop(u"3"_s);
    QVERIFY(model->isModified());
    QVERIFY(!model->fullScreenBackdropIsNodeId());
}

void TstProjectValues::theBackdropOfAnItemIsItsImage()
{
    const TestProject project;
    const auto model = project.create();
    QImage image(1000, 900, QImage::Format_RGB32);
    image.fill(Qt::green);
    QVERIFY(model->setIndexCardImage(firstText(model.get()), image));
    model->setFullScreenBackdrop(model->nodeIdentity(firstText(model.get())));
    QCOMPARE(model->fullScreenBackdropPixmap().size(), QSize(1000, 900));
}

void TstProjectValues::theBackdropOfAFileIsRead()
{
    const TestProject project;
    const auto model = project.create();
    QImage image(10, 20, QImage::Format_RGB32);
    image.fill(Qt::green);
    QVERIFY(image.save(project.path(u"sky.png"_s)));
    model->setFullScreenBackdrop(project.path(u"sky.png"_s));
    QCOMPARE(model->fullScreenBackdropPixmap().size(), QSize(10, 20));
}

void TstProjectValues::aBackdropThatIsNotThereIsNull()
{
    const TestProject project;
    const auto model = project.create();
    model->setFullScreenBackdrop(project.path(u"none.png"_s));
    QVERIFY(model->fullScreenBackdropPixmap().isNull());
    model->setFullScreenBackdrop(3);
    QVERIFY(model->fullScreenBackdropPixmap().isNull());
    model->setFullScreenBackdrop(4711);
    QVERIFY(model->fullScreenBackdropPixmap().isNull());
    QCOMPARE(model->fullScreenBackdropNodeId(), 4711);
}

void TstProjectValues::targetsAreStoredInAnyCase()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(model->draftTarget() == TVLDraftTarget());
    QVERIFY(model->sessionTarget() == TVLSessionTarget());
    TVLDraftTarget draft;
    draft.mCount = 80000;
    TVLSessionTarget session;
    session.mResetType = TVLSessionTarget::NextDay;
    for (int i = 0; i < 2; ++i) {
        QVERIFY(model->save(true));
        model->setDraftTarget(draft);
        QVERIFY(model->isModified());
        QVERIFY(model->draftTarget() == draft);
        QVERIFY(model->save(true));
        model->setSessionTarget(session);
        QVERIFY(model->isModified());
        QVERIFY(model->sessionTarget() == session);
    }
}

void TstProjectValues::infoAndDeviceMarkNothing()
{
    const auto model = blankModel();
    TVLProjectInfo info;
    info.mDevice = u"tablet"_s;
    model->setInfo(info);
    QCOMPARE(model->deviceName(), u"tablet"_s);
    model->setDeviceName(u"phone"_s);
    QCOMPARE(model->deviceName(), u"phone"_s);
    QCOMPARE(model->info().mDevice, u"phone"_s);
    QVERIFY(!model->isModified());
}

void TstProjectValues::theFormatVersionGoesWithTheBinderVersion_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("binderVersion");
    QTest::newRow("16") << 18 << 16 << 1;
    QTest::newRow("18") << 16 << 18 << 2;
    QTest::newRow("23") << 18 << 23 << 3;
}

void TstProjectValues::theFormatVersionGoesWithTheBinderVersion()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    const auto model = emptyModel(TVL::FormatVersion(from));
    QVERIFY(model->setFormatVersion(TVL::FormatVersion(to)));
    QCOMPARE(int(model->formatVersion()), to);
    QTEST(int(model->info().mBinderVersion), "binderVersion");
    QVERIFY(!model->isModified());
}

void TstProjectValues::theVersionFileFollows()
{
    const TestProject project;
    const auto model = project.create();
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
    project.writeFile(u"Files/version.txt"_s, "18 by hand");
    QVERIFY(model->setFormatVersion(TVL::FormatVersion23));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("23 by hand"));
}

void TstProjectValues::aMissingVersionFileIsNotMade()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(QFile::remove(project.path(u"Files/version.txt"_s)));
    QVERIFY(model->setFormatVersion(TVL::FormatVersion23));
    QVERIFY(!QFileInfo::exists(project.path(u"Files/version.txt"_s)));
}

void TstProjectValues::anUnsavedProjectGetsNoFolder()
{
    const TestProject project;
    const TestModel model(Model::createBlankProjectInMemory(project.path()));
    QVERIFY(model->setFormatVersion(TVL::FormatVersion23));
    QVERIFY(!QFileInfo::exists(project.path()));
}

void TstProjectValues::anEqualVersionWritesNothing()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/version.txt"_s, "16");
    QVERIFY(model->setFormatVersion(TVL::FormatVersion18));
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("16"));
}

void TstProjectValues::aMobileProjectLeavesTheVersionFile()
{
    const TestProject project;
    QVERIFY(project.create());
    Model mobile(project.path(), nullptr, true);
    QVERIFY(mobile.setFormatVersion(TVL::FormatVersion23));
    QCOMPARE(int(mobile.formatVersion()), 23);
    QCOMPARE(int(mobile.info().mBinderVersion), 3);
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("18"));
}

void TstProjectValues::aHigherVersionInTheFileStays()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(u"Files/version.txt"_s, "99");
    QVERIFY(!model->setFormatVersion(TVL::FormatVersion23));
    QCOMPARE(int(model->formatVersion()), 23);
    QCOMPARE(project.readFile(u"Files/version.txt"_s), QByteArray("99"));
}

void TstProjectValues::aNewProjectWritesScreenplays()
{
    QVERIFY(blankModel()->scriptMode() == TVLScriptMode::factoryDefaults());
    QVERIFY(emptyModel()->scriptMode() == TVLScriptMode::factoryDefaults());
    const TestProject project;
    QVERIFY(project.create());
    QVERIFY(!QFileInfo::exists(project.path(ModeFile)));
}

void TstProjectValues::aScriptModeIsWrittenAndAnnounced()
{
    const TestProject project;
    const auto model = project.create();
    QStringList seen;
    connect(model.get(), &Model::modifiedChanged, this, [&] { seen.append(u"modified"_s); });
    connect(model.get(), &Model::scriptModeChanged, this, [&](const TVLScriptMode &mode) {
        QVERIFY(model->scriptMode() == mode);
        seen.append(mode.mTitle);
    });
    connect(model.get(), &Model::metaDataChanged, this, [&] { seen.append(u"meta data"_s); });
    QVERIFY(model->setScriptMode(modeCalled(u"Opera"_s)));
    QCOMPARE(seen, QStringList({u"modified"_s, u"Opera"_s, u"meta data"_s}));
    QCOMPARE(project.readFile(ModeFile), modeCalled(u"Opera"_s).toXml());
}

void TstProjectValues::anEqualScriptModeIsWrittenToo()
{
    const TestProject project;
    const auto model = project.create();
    const QSignalSpy modeSpy(model.get(), &Model::scriptModeChanged);
    QVERIFY(model->setScriptMode(TVLScriptMode::factoryDefaults()));
    QCOMPARE(modeSpy.count(), 1);
    QVERIFY(model->isModified());
    QVERIFY(QFileInfo::exists(project.path(ModeFile)));
}

void TstProjectValues::aScriptModeComesBack()
{
    const TestProject project;
    auto model = project.create();
    QVERIFY(model->setScriptMode(modeCalled(u"Opera"_s)));
    model.reset();
    model = project.open();
    QVERIFY(model);
    QVERIFY(model->scriptMode() == modeCalled(u"Opera"_s));
}

void TstProjectValues::aDamagedScriptModeIsLeftAlone()
{
    const TestProject project;
    QVERIFY(project.create());
    const QByteArray damaged = modeCalled(u"Opera"_s).toXml().chopped(30);
    project.writeFile(ModeFile, damaged);
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"^Could not read the script mode of "_s));
    const auto model = project.open();
    QVERIFY(model);
    QVERIFY(model->scriptMode() == TVLScriptMode::factoryDefaults());
    QVERIFY(model->save(true));
    model->saveAll(true);
    QCOMPARE(project.readFile(ModeFile), damaged);
    QVERIFY(model->setScriptMode(modeCalled(u"Ballet"_s)));
    QCOMPARE(project.readFile(ModeFile), modeCalled(u"Ballet"_s).toXml());
}

void TstProjectValues::aScriptModeThatCannotBeWrittenIsKeptInMemory()
{
    const TestProject project;
    const auto model = project.create();
    project.writeFile(ModeFile + u"/inside"_s, "a folder where the file belongs");
    const QSignalSpy modeSpy(model.get(), &Model::scriptModeChanged);
    QVERIFY(!model->setScriptMode(modeCalled(u"Opera"_s)));
    QVERIFY(model->scriptMode() == modeCalled(u"Opera"_s));
    QCOMPARE(modeSpy.count(), 1);
    QVERIFY(model->isModified());
}

TVL_TEST(TstProjectValues)
#include "tst_projectvalues.moc"
