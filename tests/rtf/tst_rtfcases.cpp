#include "DocumentDescription.h"
#include "TestMain.h"

#include "TVLCoreUtil.h"
#include "TVLTextRtfReader.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

QDir casesDirectory()
{
    return QDir(QStringLiteral(TVL_RTF_CASES));
}

/** The first line that differs, with its number; empty when all are equal. */
QString firstDifference(const QString &actual, const QString &expected)
{
    const QStringList actualLines = actual.split(u'\n');
    const QStringList expectedLines = expected.split(u'\n');
    for (qsizetype i = 0; i < qMax(actualLines.size(), expectedLines.size()); ++i) {
        if (actualLines.value(i) != expectedLines.value(i))
            return u"line %1\nexpected: %2\nactual:   %3"_s.arg(i + 1).arg(expectedLines.value(i),
                                                                           actualLines.value(i));
    }
    return {};
}

} // namespace

/** Each file in the folder of cases is read and compared with the description beside it. */
class TstRtfCases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFileHasADescription();
    void aFileReadsAsItsDescriptionSays_data();
    void aFileReadsAsItsDescriptionSays();
};

void TstRtfCases::everyFileHasADescription()
{
    const auto baseNames = [](const QString &filter) {
        QStringList names;
        for (const QFileInfo &file : casesDirectory().entryInfoList({filter}, QDir::Files))
            names.append(file.completeBaseName());
        return names;
    };
    QCOMPARE(baseNames(u"*.rtf"_s), baseNames(u"*.expected"_s));
    QVERIFY(!baseNames(u"*.rtf"_s).isEmpty());
}

void TstRtfCases::aFileReadsAsItsDescriptionSays_data()
{
    QTest::addColumn<QString>("name");
    for (const QFileInfo &file : casesDirectory().entryInfoList({u"*.rtf"_s}, QDir::Files))
        QTest::newRow(qPrintable(file.completeBaseName())) << file.completeBaseName();
}

void TstRtfCases::aFileReadsAsItsDescriptionSays()
{
    QFETCH(QString, name);
    QFile file(casesDirectory().filePath(name + u".rtf"_s));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    QTextDocument document;
    TVLTextRtfReader reader(&document);
    QVERIFY2(reader.read(&file), qPrintable(reader.errorString()));
    const QString actual = describeDocument(document);
    const QString expected = QString::fromUtf8(
        TVLCoreUtil::ReadBinaryFile(casesDirectory().filePath(name + u".expected"_s)));
    QVERIFY2(actual == expected,
             qPrintable(firstDifference(actual, expected) + u"\n\n"_s + actual));
}

TVL_TEST(TstRtfCases)
#include "tst_rtfcases.moc"
