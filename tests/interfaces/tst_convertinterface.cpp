#include "Callable.h"
#include "TestMain.h"

#include "TTextTransform.h"
#include "TVLConverters.h"
#include "TVLFileKinds.h"
#include "TVLFormat.h"
#include "TVLGuiUtil.h"
#include "TVLImportExportConfig.h"
#include "TVLProcess.h"
#include "TVLTextFiles.h"
#include "TvlMedia.h"

#include <QTextDocument>

/** What a program can call of formats, converters and outside programs. */
class TstConvertInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formats();
    void configuration();
    void transforms();
    void processes();
    void filesToItems();
};

void TstConvertInterface::formats()
{
    areCallable([](const QString &text, TVLFormat::Format format) {
        gives<TVLFormat::Format>(TVLFormat::format(text));
        gives<int>(TVLFormat::formatsCount());
        gives<TVLFormat::Format>(TVLFormat::formatAt(0));
        gives<TVLFormat::Info>(TVLFormat::formatInfo(0));
        gives<QString>(TVLFormat::formatExtension(0));
        gives<QString>(TVLFormat::formatExtension(format));
        gives<QString>(TVLFormat::extension(format));
        gives<QStringList>(TVLFormat::extensions(format));
        gives<QString>(TVLFormat::description(format));
        gives<QString>(TVLFormat::label(format));
        gives<TVLFormat::Kind>(TVLFormat::kind(format));
        gives<TVLImportExport::Engine>(TVLFormat::tableImportEngine(format));
        gives<TVLImportExport::Engine>(TVLFormat::tableExportEngine(format));
        gives<bool>(TVLFormat::isMmdVariant(format));
        gives<QString>(TVLFormat::createFormatFilter(text, QStringList()));
        const TVLFormat value = format;
        const TVLFormat::Format back = value;
        gives<TVLFormat::Format>(back);
    });
}

void TstConvertInterface::configuration()
{
    areCallable([](TVLFormat::Format format) {
        const TVLImportExportConfig *config = TVLImportExportConfig::instance();
        const TVLImportExportConfig other(TVLImportExportConfig::installedConverters());
        gives<QSet<TVLFormat::Format>>(other.importFormats());
        gives<QSet<TVLFormat::Format>>(other.exportFormats());
        gives<TVLImportExport::Engine>(config->importEngine(format));
        gives<TVLImportExport::Engine>(config->exportEngine(format));
        gives<TVLImportExport::Engine>(config->findEngine(format, format));
        gives<QString>(config->kindleGenFilePath());
        gives<bool>(config->kindleGenExists());
        gives<QString>(TVLConverters::officePath());
        gives<QString>(TVLConverters::markupPath());
        gives<QString>(TVLConverters::findProgram(QString()));
        gives<QString>(TVLConverters::ownProgram(QString(), ""));
    });
}

void TstConvertInterface::transforms()
{
    areCallable([](const QString &text, QString *error, TVLFormat::Format format,
                   TVLImportExport::Engine engine) {
        using namespace TTextTransform;
        gives<QString>(errorDescription(1));
        gives<QString>(tvlDoc2MmdPath());
        gives<QString>(doc2AnyPath());
        gives<int>(timeLimit());
        setTimeLimit(1);
        gives<Error>(transformProcess(text, QStringList(), text, error, true));
        gives<Error>(transformFileViaTools(text, text, format, engine, error, true));
        gives<Error>(transformDoc2Any(text, text, format, engine, error, true));
    });
}

void TstConvertInterface::processes()
{
    areCallable([](const QString &text, TVLProgress *progress) {
        const TVLProcess::Result result = TVLProcess::executeProcess(text, 1, text);
        gives<TVLProcess::Result>(TVLProcess::execute(text, QStringList(), 1, text));
        gives<TVLProcess::Result>(TVLProcess::execute(text, QStringList(), 1, text, progress));
        gives<bool>(result.isDone());
        gives<QString>(TVLProcess::quoted(text));
        gives<QString>(TVLProcess::toString(result.exitStatus));
        gives<QString>(TVLProcess::toString(result.error));
    });
}

void TstConvertInterface::filesToItems()
{
    areCallable([](const QString &text, QString *error) {
        gives<TVL::NodeType>(TVLFileKinds::suffixToNodeType(text));
        gives<TVLFileKinds::Reader>(TVLFileKinds::textReader(text));
        gives<bool>(TVLFileKinds::isOutline(text));
        gives<bool>(TVLFileKinds::becomesText(text, true, false));
        gives<std::unique_ptr<QTextDocument>>(tvlReadPlainTextFile(text, error));
        gives<std::unique_ptr<QTextDocument>>(tvlReadRichTextFile(text, error));
        gives<QStringList>(TvlMedia::displayMediaFormats());
        gives<QStringList>(TVLGuiUtil::readWriteImageFormats());
    });
}

TVL_TEST(TstConvertInterface)
#include "tst_convertinterface.moc"
