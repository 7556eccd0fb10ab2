#pragma once

#include "dom/limits.h"

namespace dom {

/// How much of a file is too much for Qt's reader.
struct ReadingLimits
{
    /// Elements within each other.
    int m_iDepth = limits::kMaxFileDepth;
    /// Bytes that entities add.
    qint64 m_iGrowth = limits::kMaxEntityGrowth;
};

} // namespace dom
