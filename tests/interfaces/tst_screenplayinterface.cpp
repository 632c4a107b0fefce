#include "Callable.h"
#include "TestMain.h"

#include "TVLFinalDraftReader.h"
#include "TVLFinalDraftWriter.h"
#include "TvlFountain.h"

#include <QFile>
#include <QTextDocument>

/** What a program can call of screenplays' files. */
class TstScreenplayInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fountain();
    void finalDraft();
};

void TstScreenplayInterface::fountain()
{
    areCallable([](const QString &path, const QTextDocument *document, QTextDocument *target,
                   const QList<TVLScriptElement> &elements, QString *error) {
        gives<bool>(TvlFountain::writeFile(path, document, elements, error));
        gives<QString>(TvlFountain::toText(document, elements));
        gives<bool>(TvlFountain::parseText(path, target, elements));
        gives<bool>(TvlFountain::parseText(path, target, elements, error));
    });
}

void TstScreenplayInterface::finalDraft()
{
    areCallable([](const QString &path, QFile *file, QTextDocument *document,
                   const QList<TVLScriptElement> &elements) {
        TVLFinalDraftReader reader;
        gives<bool>(reader.load(path));
        gives<bool>(reader.read(document, elements));
        gives<QString>(reader.errorString());
        gives<bool>(TVLFinalDraftWriter::write(file, document, elements));
        gives<QByteArray>(TVLFinalDraftWriter::toXml(document, elements));
    });
}

TVL_TEST(TstScreenplayInterface)
#include "tst_screenplayinterface.moc"
