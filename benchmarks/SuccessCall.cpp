// SPDX-License-Identifier: MIT
#include "SuccessCall.h"

#include <string>

#include <boost/thread/tss.hpp>

namespace {

constexpr const char *kSuccessText = "No error, last function reset the last error to GC_ERR_SUCCESS.";

struct ErrorRecord {
  std::string strText;
  int32_t iCode = 0;
};

boost::thread_specific_ptr<ErrorRecord> g_pRecord;
thread_local ErrorRecord t_Record;

int32_t Store(ErrorRecord &record) {
  record.strText.assign(kSuccessText);
  record.iCode = 0;
  return 0;
}

}  // namespace

int32_t StoreSuccessTss(void) {
  ErrorRecord *pRecord = g_pRecord.get();
  if (pRecord == nullptr) {
    pRecord = new ErrorRecord;
    g_pRecord.reset(pRecord);
  }
  return Store(*pRecord);
}

int32_t StoreSuccessThreadLocal(void) { return Store(t_Record); }
