// Attachment of threads and the fire alarm.
//
// The library throws nothing, and most of its small operations return nothing. When memory runs out
// deep inside a string or an array, that place raises the alarm of its thread, and the parser or
// builder at work on the thread checks the alarm when it ends. The alarm lives in the thread's
// KRParseLogger, together with the warnings of its last parse; a thread that has a logger is
// attached.
//
// Attachment needs no call on this platform. The thread that loads the library is attached then;
// every other thread attaches itself when it first asks for its logger or its id, and is detached
// when it ends. KRAttachThread and KRDetachThread are for hosts that attach and detach threads
// themselves.

#ifndef KROFX_CORE_THREAD_H_
#define KROFX_CORE_THREAD_H_

#include "krofx/core/export.h"
#include "krofx/core/types.h"

/// The state of a thread's fire alarm.
enum KRFireAlarm : u32 {
  /// No allocation has failed since the last parse or build began.
  KRFireAlarm_None = 0,
  /// Memory was exhausted. Also the state of a thread that is not attached.
  KRFireAlarm_MemoryExhausted = 1,
};

/// What can happen to the library or to one of its threads, for KRLibraryNotification.
enum KRLibraryEvent : u32 {
  KRLibraryEvent_ProcessDetach = 0,  ///< the library is about to be unloaded
  KRLibraryEvent_ProcessAttach = 1,  ///< the library was loaded, by the calling thread
  KRLibraryEvent_ThreadAttach = 2,   ///< the calling thread has begun
  KRLibraryEvent_ThreadDetach = 3,   ///< the calling thread is about to end
};

/// Gets the calling thread's key in the table of threads. A thread that has never been attached is
/// attached by this call, so the key is in the table afterwards.
/// @return the thread's number in the operating system, which no other living thread has.
KROFX_API u32 KRCurrentThreadId();

/// Attaches a thread: gives it a KRParseLogger and with it a fire alarm, which is clear. A thread
/// that is already attached keeps its logger.
///
/// @param threadId the thread's key, as KRCurrentThreadId gives it on that thread.
/// @return 1 when the thread is attached now; 0 when memory is exhausted. No alarm is raised then,
///         because the thread has no logger to hold it.
KROFX_API u16 KRAttachThread(u32 threadId);

/// Detaches a thread and destroys its logger with all its warnings. From then on the thread has no
/// logger and cannot parse or build, until KRAttachThread is called for it. A thread must not be
/// detached while it is inside the library.
///
/// @param threadId the thread's key, as KRCurrentThreadId gives it on that thread.
/// @return 1, also when the thread was not attached; 0 after the process detach, when the library
///         has no table of threads.
KROFX_API u16 KRDetachThread(u32 threadId);

/// Sets the calling thread's fire alarm. Does nothing on a thread that is not attached. Takes no
/// memory.
KROFX_API void KRSetFireAlarm(KRFireAlarm alarm);

/// The same for a plain number, so that a host may write KRSetFireAlarm(1).
inline void KRSetFireAlarm(int alarm) { KRSetFireAlarm(static_cast<KRFireAlarm>(alarm)); }

/// The calling thread's fire alarm. Asking does not clear it: it stays until the next parse or
/// build on the thread begins.
///
/// @return what was last set; KRFireAlarm_MemoryExhausted for a thread that is not attached.
KROFX_API KRFireAlarm KRGetFireAlarm();

/// Notifies the library of an event in the life of the process or of the calling thread. Every
/// event except the process detach is handled without this call. A host that unloads the library
/// calls it with KRLibraryEvent_ProcessDetach first, when no other thread uses the library any
/// more; from then on every thread counts as not attached, and no thread attaches itself again.
///
/// - Process attach and thread attach: makes the table of threads if there is none, and attaches
///   the calling thread.
/// - Thread detach: detaches the calling thread.
/// - Process detach: destroys the table. The loggers of threads that are still attached are not
///   destroyed, since a thread may be using one.
///
/// @param event a KRLibraryEvent; any other value does nothing.
/// @return 1; 0 when there is not enough memory to attach, when there is no table to detach from,
///         and for a value that is not an event.
KROFX_API u16 KRLibraryNotification(u32 event);

#endif  // KROFX_CORE_THREAD_H_
