#pragma once

#include "schema/schematables.h"
#include "schema/templatecontent.h"

/// The resolution pass as plain sweeps over all names, in the order of the names, until nothing is open: slow, and
/// simple enough to be seen to be right. Knows nothing of extensions.
class LiteralPass
{
public:
    LiteralPass(MissingMap &missing, TypeMap &types)
        : m_MissingMap(missing)
        , m_TypeMap(types)
    {
    }

    bool Run()
    {
        m_bRepeat = true;
        for (int left = 1000; left > 0 && m_bRepeat; --left) {
            m_bRepeat = false;
            if (!Sweep()) {
                return false;
            }
        }
        return !m_bRepeat;
    }

private:
    using Counts = std::map<int, std::list<MissingElement>>;

    bool Sweep()
    {
        for (auto &[name, counts] : m_MissingMap) {
            const auto entry = m_TypeMap.find(name);
            if (entry == m_TypeMap.end()) {
                return false;
            }
            m_bRepeat = m_bRepeat || entry->second.m_iOpenRefs > 0;
            if (entry->second.m_iOpenRefs == 0) {
                Process(entry->second, counts);
            }
        }
        return true;
    }

    void Process(TypeEntry &entry, Counts &counts)
    {
        entry.m_iOpenRefs = -1;
        for (auto &[count, records] : counts) {
            for (MissingElement &record : records) {
                ApplyRecord(entry, record, qMax(count, 1));
            }
        }
    }

    void ApplyRecord(TypeEntry &entry, MissingElement &record, int times)
    {
        const bool isPlace = record.m_pParent->tagName() == QLatin1String("dummy") && !record.m_bAttribute;
        entry.m_bUsed = true;
        for (int i = 0; i < times; ++i) {
            ApplyAttributes(entry.m_pFragment->firstChildElement(), record, isPlace);
            ApplyContent(entry, record, isPlace);
            TypeEntry &owner = m_TypeMap[record.m_sOwner];
            owner.m_iOpenRefs -= owner.m_iOpenRefs > 0 && (!isPlace || i == 0) ? 1 : 0;
        }
        if (isPlace) {
            record.m_pParent->parentNode().removeChild(*record.m_pParent);
        }
    }

    static void ApplyAttributes(const QDomElement &first, MissingElement &record, bool isPlace)
    {
        const bool hasCarrier = first.tagName() == QLatin1String("dummy");
        const QString suffix = record.m_bAttribute ? first.tagName() : QString();
        if (!suffix.isEmpty()) {
            record.m_pParent->setAttribute(suffix, first.attribute(QStringLiteral("type")));
        }
        const QDomNamedNodeMap map = first.attributes();
        for (int i = 0; i < map.count() && !isPlace; ++i) {
            const QString name = map.item(i).nodeName();
            if (record.m_bAttribute ? name.contains(QLatin1String("clusive")) : hasCarrier) {
                record.m_pParent->setAttribute(name + suffix, map.item(i).nodeValue());
            }
        }
    }

    static void ApplyContent(const TypeEntry &entry, MissingElement &record, bool isPlace)
    {
        const QDomNode clone = content::CloneContent(*entry.m_pFragment);
        if (isPlace) {
            record.m_pParent->parentNode().insertBefore(clone, *record.m_pParent);
        } else if (record.m_pAfter != nullptr && !record.m_bAttribute) {
            record.m_pParent->insertAfter(clone, *record.m_pAfter);
        } else if (!record.m_bAttribute) {
            record.m_pParent->appendChild(clone);
        }
    }

    MissingMap &m_MissingMap;
    TypeMap &m_TypeMap;
    bool m_bRepeat = false;
};
