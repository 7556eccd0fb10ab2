#pragma once

#include "dom/entitytable.h"
#include "dom/readinglimits.h"
#include "dom/xmltext.h"

#include <QHash>
#include <QString>

#include <vector>

namespace dom {

/// Reads the declarations between "[" and "]" of a document type as Qt does: parameter entities are put in where they
/// are named, across the borders of declarations. It is at least as patient as Qt, which gives up wherever this does.
class DtdScanner
{
public:
    enum class Result {
        /// Read up to the closing bracket.
        Closed,
        /// Not understood from here on.
        Lost,
        /// A limit is broken, which GetReason names.
        Refused
    };

    DtdScanner(XmlText &text, EntityTable &entities, const ReadingLimits &limits);

    Result Read();
    const QString &GetReason() const { return m_sReason; }
    /// What parameter entities have put in, in characters.
    qint64 GetGrowth() const { return m_iGrowth; }
    /// Characters of parameter entities that are left when reading ends.
    QString TakeRest();

private:
    struct Source
    {
        QString m_sText;
        int m_iAt = 0;
    };

    bool Get(ushort &character);
    void Unget();
    bool GetBehindBlanks(ushort &character);
    QString GetName();
    bool ReadDeclaration();
    bool ReadEntity();
    bool ReadEntityValue(ushort quote, QString &value);
    bool ReadCharacterReference(QString &value);
    bool ReadParameterReference(bool isLiteral);
    bool SkipDeclaration();
    bool RefuseContentModel();
    bool SkipLiteral(ushort quote);
    bool SkipPast(ushort mark, int count);
    bool Refuse(const QString &reason);

    XmlText &m_oText;
    EntityTable &m_oEntities;
    ReadingLimits m_oLimits;
    qint64 m_iGrowth = 0;
    std::vector<Source> m_lOpen;
    QHash<QString, QString> m_hParameters;
    QString m_sReason;
};

} // namespace dom
