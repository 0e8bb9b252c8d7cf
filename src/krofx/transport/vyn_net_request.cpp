// The life of a request: its settings, and its place among the requests of an access object.

#include "krofx/transport/vyn_net_request.h"

#include "krofx/transport/vyn_net_access.h"

VYNNetRequest::VYNNetRequest()
    : m_roots(1, 5), m_expectedIDs(2, 2), m_expectedNames(2, 2), m_savedHeaders(0, 0) {}

VYNNetRequest::~VYNNetRequest() {
  EndExchange();
  if (m_call != nullptr) m_call->requestGone = true;
  LeaveAccess();
  DeleteReplyFiles();
}

VYNConnectionManager* VYNNetRequest::Manager() const {
  return m_access == nullptr ? nullptr : m_access->m_manager;
}

void VYNNetRequest::SetAccess(VYNNetAccess* access) {
  if (m_call != nullptr) return;
  LeaveAccess();
  m_access = access;
  if (access == nullptr) return;
  m_next = access->m_requests;
  if (m_next != nullptr) m_next->m_previous = this;
  access->m_requests = this;
}

void VYNNetRequest::LeaveAccess() {
  if (m_access == nullptr) return;
  if (m_previous == nullptr) {
    m_access->m_requests = m_next;
  } else {
    m_previous->m_next = m_next;
  }
  if (m_next != nullptr) m_next->m_previous = m_previous;
  m_access = nullptr;
  m_next = nullptr;
  m_previous = nullptr;
}

u16 VYNNetRequest::SetSSLVerifyCert(u16 verify) {
  m_verify = verify;
  return 1;
}

u16 VYNNetRequest::SetSaveHeaders(u16 save) {
  m_saveHeaders = save;
  return 1;
}

u16 VYNNetRequest::SetTimeout(s32 seconds) {
  m_timeout = seconds;
  return 1;
}
