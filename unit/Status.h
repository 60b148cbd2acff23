// What an operation that reports a status answers.
#pragma once

#include "rmi/ResponseInfo.h"

namespace trs::sim {

// `Kind` is GetClient, SetClient or RunClient.
template <class Kind>
constexpr typename Kind::State statusOf(bool isDone)
{
    return isDone ? Kind::OK : Kind::FAILED;
}

} // namespace trs::sim
