#include "TVLProjectNodeProperties.h"

#include "TestMain.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Properties = TVLProjectNodeProperties;

/** What a merge does with a field. */
enum class Merge {
    Leaves,
    Takes,
    Resets, ///< To false or 0, whatever either side has.
};

/** One field of the record: its default, two other values to tell sides apart, and its merging. */
struct Field
{
    QByteArray name;
    std::function<bool(const Properties &)> isDefault;
    std::function<bool(const Properties &)> isReset;
    std::function<bool(const Properties &, const Properties &)> isEqual;
    std::function<void(Properties *)> setOne;
    std::function<void(Properties *)> setOther;
    Merge mobile = Merge::Leaves;
    Merge desktop = Merge::Leaves;
};

template <typename T>
Field field(const char *name, T Properties::*member, const T &standard, const T &one,
            const T &other, Merge mobile, Merge desktop)
{
    return {
        name,
        [=](const Properties &record) { return record.*member == standard; },
        [=](const Properties &record) { return record.*member == T(); },
        [=](const Properties &left, const Properties &right) {
            return left.*member == right.*member;
        },
        [=](Properties *record) { record->*member = one; },
        [=](Properties *record) { record->*member = other; },
        mobile,
        desktop,
    };
}

/** A flag has one value beside its default, so the default serves as the other. */
Field flag(const char *name, bool Properties::*member, bool standard, Merge mobile, Merge desktop)
{
    return field(name, member, standard, !standard, standard, mobile, desktop);
}

QDateTime dateOf(int day)
{
    return QDateTime(QDate(2020, 5, day), QTime(1, 2, 3), Qt::UTC);
}

TVLReference referenceTo(int id)
{
    TVLReference reference;
    reference.setInternalLink(id);
    return reference;
}

QHash<int, TVLFreeformPositionInfo> positionOf(int id)
{
    return {{id, {id, QPointF(id, id), u"2020-01-01 00:00:00 +0000"_s}}};
}

std::vector<Field> fields()
{
    using P = Properties;
    using enum Merge;
    const QUuid null;
    const QUuid left(u"11111111-2222-3333-4444-555555555555"_s);
    const QUuid right(u"99999999-2222-3333-4444-555555555555"_s);
    const QString none;
    const QString one = u"one"_s;
    const QString other = u"other"_s;
    using Selection = QPair<int, int>;
    using Texts = QMap<QString, QString>;
    using Positions = QHash<int, TVLFreeformPositionInfo>;
    using References = QList<TVLReference>;

    return {
        field("mId", &P::mId, -1, 5, 6, Leaves, Leaves),
        field("mUuid", &P::mUuid, null, left, right, Leaves, Leaves),
        field("mTitle", &P::mTitle, none, one, other, Takes, Takes),
        field("mNodeType", &P::mNodeType, TVL::Text, TVL::Folder, TVL::Image, Takes, Takes),
        field("mTargetType", &P::mTargetType, int(TVL::WordsTarget), int(TVL::CharactersTarget),
              int(TVL::WordsTarget), Takes, Takes),
        field("mLabelId", &P::mLabelId, -1, 2, 3, Takes, Leaves),
        field("mStatusId", &P::mStatusId, -1, 2, 3, Takes, Leaves),
        field("mDefaultChildTemplateId", &P::mDefaultChildTemplateId, -1, 2, 3, Leaves, Takes),
        field("mFileExtension", &P::mFileExtension, none, one, other, Takes, Takes),
        field("mIndexCardImageFileExtension", &P::mIndexCardImageFileExtension, none, one, other,
              Takes, Takes),
        field("mIconFileName", &P::mIconFileName, none, one, other, Takes, Takes),
        field("mPreferredExternalApplication", &P::mPreferredExternalApplication, none, one, other,
              Leaves, Takes),
        field("mCustomMetaData", &P::mCustomMetaData, Texts(), Texts{{one, one}},
              Texts{{one, other}}, Leaves, Takes),
        field("mTextSelection", &P::mTextSelection, Selection(0, 0), Selection(1, 2),
              Selection(3, 4), Leaves, Leaves),
        field("mNotesTextSelection", &P::mNotesTextSelection, Selection(0, 0), Selection(1, 2),
              Selection(3, 4), Leaves, Leaves),
        field("mCreated", &P::mCreated, QDateTime(), dateOf(1), dateOf(2), Takes, Leaves),
        field("mModified", &P::mModified, QDateTime(), dateOf(1), dateOf(2), Takes, Takes),
        field("mRestoredSnapshotDate", &P::mRestoredSnapshotDate, QDateTime(), dateOf(1), dateOf(2),
              Leaves, Leaves),
        field("mKeywords", &P::mKeywords, QList<int>(), {1, 2}, {2, 1}, Leaves, Leaves),
        field("mReferences", &P::mReferences, References(), References{referenceTo(1)},
              References{referenceTo(2)}, Leaves, Leaves),
        field("mTextMode", &P::mTextMode, none, one, other, Takes, Takes),
        field("mTypingAttributes", &P::mTypingAttributes, QByteArray(), QByteArray("a"),
              QByteArray("b"), Leaves, Takes),
        field("mOriginalUrl", &P::mOriginalUrl, none, one, other, Takes, Takes),
        field("mTarget", &P::mTarget, 0, 100, 200, Leaves, Takes),
        field("mCurrentPdfPage", &P::mCurrentPdfPage, 1, 2, 3, Leaves, Takes),
        field("mImageScaleFactor", &P::mImageScaleFactor, 1.0, 1.5, 2.5, Leaves, Takes),
        field("mImageRotation", &P::mImageRotation, 0, 1, 2, Leaves, Takes),
        flag("mImageScalesProportionally", &P::mImageScalesProportionally, true, Leaves, Takes),
        flag("mIncludeInCompile", &P::mIncludeInCompile, true, Leaves, Takes),
        flag("mPageBreakBefore", &P::mPageBreakBefore, false, Leaves, Takes),
        flag("mCompileAsIs", &P::mCompileAsIs, false, Leaves, Takes),
        flag("mIsTemplateFolder", &P::mIsTemplateFolder, false, Leaves, Leaves),
        flag("mShowSynopsisImage", &P::mShowSynopsisImage, false, Takes, Takes),
        flag("mIgnoresTitlePrefixAndSuffix", &P::mIgnoresTitlePrefixAndSuffix, false, Leaves,
             Takes),
        flag("mTargetNotify", &P::mTargetNotify, false, Leaves, Takes),
        flag("mTargetAllowOver", &P::mTargetAllowOver, false, Leaves, Leaves),
        field("mTargetBuffer", &P::mTargetBuffer, 0, 10, 20, Leaves, Leaves),
        flag("mIsFavorite", &P::mIsFavorite, false, Leaves, Leaves),
        flag("mIsAlias", &P::mIsAlias, false, Takes, Leaves),
        flag("mHasText", &P::mHasText, false, Leaves, Takes),
        flag("mHasSynopsis", &P::mHasSynopsis, false, Leaves, Takes),
        flag("mHasDocumentNote", &P::mHasDocumentNote, false, Leaves, Takes),
        flag("mHasSnapshots", &P::mHasSnapshots, false, Leaves, Resets),
        field("mWordCount", &P::mWordCount, -1, 10, 20, Leaves, Leaves),
        field("mCharacterCount", &P::mCharacterCount, -1, 10, 20, Leaves, Leaves),
        field("mSessionWordCount", &P::mSessionWordCount, -1, 10, 20, Leaves, Resets),
        field("mSessionCharacterCount", &P::mSessionCharacterCount, -1, 10, 20, Leaves, Resets),
        field("mSelectedSubdocumentIds", &P::mSelectedSubdocumentIds, QSet<int>(), {1}, {2}, Leaves,
              Leaves),
        flag("mFreeformMode", &P::mFreeformMode, false, Leaves, Leaves),
        field("mFreeformPositions", &P::mFreeformPositions, Positions(), positionOf(1),
              positionOf(2), Leaves, Leaves),
    };
}

const Field &fieldNamed(const QByteArray &name)
{
    static const std::vector<Field> all = fields();
    return *std::find_if(all.begin(), all.end(),
                         [&name](const Field &field) { return field.name == name; });
}

/** A record in which every field has its first or its second value. */
Properties filledRecord(bool other)
{
    Properties record;
    for (const Field &field : fields())
        (other ? field.setOther : field.setOne)(&record);
    return record;
}

void addFieldRows()
{
    QTest::addColumn<QByteArray>("name");
    for (const Field &field : fields())
        QTest::newRow(field.name.constData()) << field.name;
}

using Apply = void (Properties::*)(const Properties &);

/** Merges two filled records and holds the result of one field to what the table says of it. */
void checkMerge(const Field &field, Merge merge, Apply apply, bool backwards)
{
    const Properties before = filledRecord(backwards);
    const Properties incoming = filledRecord(!backwards);
    QVERIFY2(!field.isEqual(before, incoming), "the two sides must differ");

    Properties merged = before;
    (merged.*apply)(incoming);
    switch (merge) {
    case Merge::Leaves:
        QVERIFY(field.isEqual(merged, before));
        break;
    case Merge::Takes:
        QVERIFY(field.isEqual(merged, incoming));
        break;
    case Merge::Resets:
        QVERIFY(field.isReset(merged));
        break;
    }
    QVERIFY2(incoming == filledRecord(!backwards), "the incoming record must stay as it was");
}

void addNodeTypePairs()
{
    QTest::addColumn<TVL::NodeType>("own");
    QTest::addColumn<TVL::NodeType>("incoming");
    QTest::addColumn<TVL::NodeType>("result");
    for (int own = 0; own <= 9; ++own) {
        for (int incoming = 0; incoming <= 9; ++incoming) {
            const int result = own == incoming ? own : incoming < 3 ? 3 : incoming;
            QTest::addRow("%d from %d", own, incoming)
                << TVL::NodeType(own) << TVL::NodeType(incoming) << TVL::NodeType(result);
        }
    }
}

TVL::NodeType mergedType(TVL::NodeType own, TVL::NodeType incoming, Apply apply)
{
    Properties record;
    record.mNodeType = own;
    Properties other;
    other.mNodeType = incoming;
    (record.*apply)(other);
    return record.mNodeType;
}

void addTypeWords()
{
    QTest::addColumn<TVL::NodeType>("type");
    QTest::addColumn<QString>("word");
    QTest::newRow("draft") << TVL::DraftFolder << u"DraftFolder"_s;
    QTest::newRow("research") << TVL::ResearchFolder << u"ResearchFolder"_s;
    QTest::newRow("trash") << TVL::TrashFolder << u"TrashFolder"_s;
    QTest::newRow("folder") << TVL::Folder << u"Folder"_s;
    QTest::newRow("text") << TVL::Text << u"Text"_s;
    QTest::newRow("image") << TVL::Image << u"Image"_s;
    QTest::newRow("pdf") << TVL::PDF << u"PDF"_s;
    QTest::newRow("media") << TVL::Media << u"Media"_s;
    QTest::newRow("web archive") << TVL::WebArchive << u"WebArchive"_s;
    QTest::newRow("other") << TVL::Other << u"Other"_s;
}

} // namespace

class TstNodeProperties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFieldStartsWithItsDefault_data() { addFieldRows(); }
    void everyFieldStartsWithItsDefault();
    void aFreeformPositionStartsAtZeroWithoutAChild();

    void everyNodeTypeHasItsNumberAndWord_data() { addTypeWords(); }
    void everyNodeTypeHasItsNumberAndWord();
    void theNumbersOfNodeTypesRunFromZeroInTheOrderOfTheirWords();
    void anUnknownNodeTypeWordMeansText_data();
    void anUnknownNodeTypeWordMeansText();
    void aNodeTypeOutsideTheTableHasTheWordText();

    void isValidNeedsAnIdAndAUuid_data();
    void isValidNeedsAnIdAndAUuid();
    void updateModifiedSetsTheCurrentTime();
    void removeIdForgetsAChildOnTheCorkboard();
    void removeIdWithTheOwnIdLeavesSelectionAndPositionsAlone();
    void removeIdOfAStrangerChangesNothing();

    void aMobileMergeTreatsEveryFieldAsItsTableSays_data() { addFieldRows(); }
    void aMobileMergeTreatsEveryFieldAsItsTableSays();
    void aDesktopMergeTreatsEveryFieldAsItsTableSays_data() { addFieldRows(); }
    void aDesktopMergeTreatsEveryFieldAsItsTableSays();
    void aMobileMergeNeverMakesARootFolder_data() { addNodeTypePairs(); }
    void aMobileMergeNeverMakesARootFolder();
    void aDesktopMergeNeverMakesARootFolder_data() { addNodeTypePairs(); }
    void aDesktopMergeNeverMakesARootFolder();
    void aMobileMergeWithNoIconKeepsTheOldIcon();
    void aMobileMergeWithAnIconReplacesTheOldIcon();
    void aDesktopMergeWithNoIconClearsTheOldIcon();
    void mergingARecordWithItselfDoesNothing();
    void applyingAllTakesEveryFieldButTheIdentity_data() { addFieldRows(); }
    void applyingAllTakesEveryFieldButTheIdentity();
    void applyingAllFromItselfDoesNothing();
    void aDifferenceInAnyFieldMakesRecordsUnequal_data() { addFieldRows(); }
    void aDifferenceInAnyFieldMakesRecordsUnequal();
    void aCopyDoesNotChangeWithItsOriginal();
};

void TstNodeProperties::everyFieldStartsWithItsDefault()
{
    QFETCH(QByteArray, name);
    QVERIFY(fieldNamed(name).isDefault(Properties()));
}

void TstNodeProperties::aFreeformPositionStartsAtZeroWithoutAChild()
{
    const TVLFreeformPositionInfo info;
    QCOMPARE(info.mId, -1);
    QCOMPARE(info.mPosition, QPointF(0, 0));
    QVERIFY(info.mTimeStamp.isEmpty());
}

void TstNodeProperties::everyNodeTypeHasItsNumberAndWord()
{
    QFETCH(TVL::NodeType, type);
    QFETCH(QString, word);
    QCOMPARE(TVL::wordOf(type), word);
    QCOMPARE(int(TVL::toNodeType(word)), int(type));
}

void TstNodeProperties::theNumbersOfNodeTypesRunFromZeroInTheOrderOfTheirWords()
{
    const QStringList words = {u"DraftFolder"_s, u"ResearchFolder"_s, u"TrashFolder"_s, u"Folder"_s,
                               u"Text"_s,        u"Image"_s,          u"PDF"_s,         u"Media"_s,
                               u"WebArchive"_s,  u"Other"_s};
    for (int number = 0; number < words.size(); ++number)
        QCOMPARE(int(TVL::toNodeType(words.at(number))), number);
}

void TstNodeProperties::anUnknownNodeTypeWordMeansText_data()
{
    QTest::addColumn<QString>("word");
    QTest::newRow("none") << QString();
    QTest::newRow("unknown") << u"Unknown"_s;
    QTest::newRow("lower case") << u"folder"_s;
    QTest::newRow("upper case") << u"IMAGE"_s;
    QTest::newRow("blank before") << u" Folder"_s;
    QTest::newRow("number") << u"3"_s;
}

void TstNodeProperties::anUnknownNodeTypeWordMeansText()
{
    QFETCH(QString, word);
    QCOMPARE(int(TVL::toNodeType(word)), int(TVL::Text));
}

void TstNodeProperties::aNodeTypeOutsideTheTableHasTheWordText()
{
    QCOMPARE(TVL::wordOf(TVL::NodeType(10)), u"Text"_s);
}

void TstNodeProperties::isValidNeedsAnIdAndAUuid_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("hasUuid");
    QTest::addColumn<bool>("valid");
    QTest::newRow("default") << -1 << false << false;
    QTest::newRow("id alone") << 0 << false << false;
    QTest::newRow("uuid alone") << -1 << true << false;
    QTest::newRow("id 0 and a uuid") << 0 << true << true;
    QTest::newRow("greatest id and a uuid") << std::numeric_limits<int>::max() << true << true;
    QTest::newRow("least id and a uuid") << std::numeric_limits<int>::min() << true << false;
}

void TstNodeProperties::isValidNeedsAnIdAndAUuid()
{
    QFETCH(int, id);
    QFETCH(bool, hasUuid);
    Properties record;
    record.mId = id;
    if (hasUuid)
        record.mUuid = QUuid::createUuid();
    QTEST(record.isValid(), "valid");
}

void TstNodeProperties::updateModifiedSetsTheCurrentTime()
{
    Properties record;
    record.mCreated = dateOf(1);
    const QDateTime before = QDateTime::currentDateTime();
    record.updateModified();
    QVERIFY(record.mModified >= before);
    QVERIFY(record.mModified <= QDateTime::currentDateTime());
    QCOMPARE(record.mCreated, dateOf(1));
}

void TstNodeProperties::removeIdForgetsAChildOnTheCorkboard()
{
    Properties record;
    record.mId = 1;
    record.mSelectedSubdocumentIds = {2, 3};
    record.mFreeformPositions = positionOf(2);
    record.mFreeformPositions.insert(positionOf(3));
    record.removeId(2);
    QCOMPARE(record.mSelectedSubdocumentIds, QSet<int>{3});
    QCOMPARE(record.mFreeformPositions, positionOf(3));
}

void TstNodeProperties::removeIdWithTheOwnIdLeavesSelectionAndPositionsAlone()
{
    Properties record;
    record.mId = 2;
    record.mSelectedSubdocumentIds = {2};
    record.mFreeformPositions = positionOf(2);
    record.removeId(2);
    QCOMPARE(record.mSelectedSubdocumentIds, QSet<int>{2});
    QCOMPARE(record.mFreeformPositions, positionOf(2));
}

void TstNodeProperties::removeIdOfAStrangerChangesNothing()
{
    Properties record = filledRecord(false);
    record.removeId(77);
    QCOMPARE(record, filledRecord(false));
}

void TstNodeProperties::aMobileMergeTreatsEveryFieldAsItsTableSays()
{
    QFETCH(QByteArray, name);
    const Field &field = fieldNamed(name);
    checkMerge(field, field.mobile, &Properties::applyMobileProperties, false);
    checkMerge(field, field.mobile, &Properties::applyMobileProperties, true);
}

void TstNodeProperties::aDesktopMergeTreatsEveryFieldAsItsTableSays()
{
    QFETCH(QByteArray, name);
    const Field &field = fieldNamed(name);
    checkMerge(field, field.desktop, &Properties::applyDesktopProperties, false);
    checkMerge(field, field.desktop, &Properties::applyDesktopProperties, true);
}

void TstNodeProperties::aMobileMergeNeverMakesARootFolder()
{
    QFETCH(TVL::NodeType, own);
    QFETCH(TVL::NodeType, incoming);
    QFETCH(TVL::NodeType, result);
    QCOMPARE(int(mergedType(own, incoming, &Properties::applyMobileProperties)), int(result));
}

void TstNodeProperties::aDesktopMergeNeverMakesARootFolder()
{
    QFETCH(TVL::NodeType, own);
    QFETCH(TVL::NodeType, incoming);
    QFETCH(TVL::NodeType, result);
    QCOMPARE(int(mergedType(own, incoming, &Properties::applyDesktopProperties)), int(result));
}

void TstNodeProperties::aMobileMergeWithNoIconKeepsTheOldIcon()
{
    Properties record;
    record.mIconFileName = u"Leaf"_s;
    record.applyMobileProperties(Properties());
    QCOMPARE(record.mIconFileName, u"Leaf"_s);
}

void TstNodeProperties::aMobileMergeWithAnIconReplacesTheOldIcon()
{
    Properties record;
    record.mIconFileName = u"Leaf"_s;
    Properties incoming;
    incoming.mIconFileName = u"Flower"_s;
    record.applyMobileProperties(incoming);
    QCOMPARE(record.mIconFileName, u"Flower"_s);
}

void TstNodeProperties::aDesktopMergeWithNoIconClearsTheOldIcon()
{
    Properties record;
    record.mIconFileName = u"Leaf"_s;
    record.applyDesktopProperties(Properties());
    QVERIFY(record.mIconFileName.isEmpty());
}

void TstNodeProperties::mergingARecordWithItselfDoesNothing()
{
    const Properties before = filledRecord(false);
    Properties record = before;
    const Properties &itself = record;
    record.applyMobileProperties(itself);
    QCOMPARE(record, before);
    record.applyDesktopProperties(itself);
    QCOMPARE(record, before);
}

void TstNodeProperties::applyingAllTakesEveryFieldButTheIdentity()
{
    QFETCH(QByteArray, name);
    const Field &field = fieldNamed(name);
    const Properties before = filledRecord(false);
    const Properties incoming = filledRecord(true);
    Properties merged = before;
    merged.applyAllPreserveIDs(incoming);
    const bool isIdentity = name == "mId" || name == "mUuid";
    QVERIFY(field.isEqual(merged, isIdentity ? before : incoming));
}

void TstNodeProperties::applyingAllFromItselfDoesNothing()
{
    Properties record = filledRecord(false);
    const Properties &itself = record;
    record.applyAllPreserveIDs(itself);
    QCOMPARE(record, filledRecord(false));
}

void TstNodeProperties::aDifferenceInAnyFieldMakesRecordsUnequal()
{
    QFETCH(QByteArray, name);
    Properties record;
    QCOMPARE(record, Properties());
    fieldNamed(name).setOne(&record);
    QVERIFY(!(record == Properties()));
}

void TstNodeProperties::aCopyDoesNotChangeWithItsOriginal()
{
    Properties original = filledRecord(false);
    const Properties copy = original;
    original = filledRecord(true);
    QCOMPARE(copy, filledRecord(false));
}

TVL_TEST(TstNodeProperties)
#include "tst_nodeproperties.moc"
