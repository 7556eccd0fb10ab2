#include "schema/localdeclaration.h"

#include <algorithm>
#include <limits>

LocalDeclaration::LocalDeclaration(const QXmlAttributes &atts)
{
    for (int i = 0; i < atts.count(); ++i) {
        const QString name = atts.qName(i);
        if (name == QLatin1String("name")) {
            m_sName = atts.value(i);
        } else if (name == QLatin1String("type")) {
            m_sType = atts.value(i);
        } else if (name == QLatin1String("minOccurs")) {
            m_iMinOccurs = atts.value(i).toInt();
        } else if (name == QLatin1String("maxOccurs")) {
            m_iMaxOccurs = atts.value(i) == QLatin1String("unbounded") ? kUnbounded : atts.value(i).toInt();
        } else if (name == QLatin1String("ref")) {
            m_sRef = atts.value(i);
        } else if (name == QLatin1String("default")) {
            m_sDefault = atts.value(i);
        }
    }
    if (m_iMinOccurs == kNotGiven) {
        m_iMinOccurs = 1;
    }
}

int LocalDeclaration::Copies() const
{
    return m_iMinOccurs == 0 ? 1 : std::max(m_iMinOccurs, 0);
}

int LocalDeclaration::OccursKey() const
{
    if (m_iMinOccurs != 0) {
        return m_iMaxOccurs;
    }
    // The key of an optional element holds its upper limit in hundreds: by that it is told from a plain limit.
    constexpr int kOptionalFactor = 100;
    constexpr int kGreatest = std::numeric_limits<int>::max() / kOptionalFactor;
    return m_iMaxOccurs == kNotGiven ? 0 : std::clamp(m_iMaxOccurs, -kGreatest, kGreatest) * kOptionalFactor;
}
