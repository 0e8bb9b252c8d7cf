// The build itself: the part of the builder that knows data objects.

#include "krofx/build/builder.h"
#include "krofx/core/thread.h"
#include "krofx/model/data_object.h"
#include "krofx/values/utility.h"

KRBuildStatus KRBuilder::Build(KRBuffer* buffer, KRDataObj* root, KRBuildStringOpt option,
                               u16 checkRequired) {
  if (buffer == nullptr || root == nullptr) return KRBuildStatus_NullArgument;
  KRSetFireAlarm(KRFireAlarm_None);
  m_buffer = buffer;
  m_stringOption = option;

  KRBuildStatus status = root->Build(this);
  if (status == KRBuildStatus_Done && checkRequired != 0) {
    KRDataObj* incomplete = root;
    KRTagID missing = KRTag_None;
    if (!KRUtility::AllRequiredPresent(&incomplete, &missing)) {
      if (m_failingObject == nullptr) m_failingObject = incomplete;
      status = KRBuildStatus_MissingTag;
    }
  }
  if (KRGetFireAlarm() != KRFireAlarm_None) {
    if (m_failingObject == nullptr) m_failingObject = root;
    status = KRBuildStatus_Fatal;
  }
  return status;
}
