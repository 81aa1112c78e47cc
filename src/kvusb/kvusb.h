/* SPDX-License-Identifier: MIT
 *
 * kvusb.h - the interface between Quillon and a HID library.
 *
 * Four C functions give access to every board on the USB bus. Quillon binds them by name, at run
 * time, from one shared library: the vendor's kvusb.dll, libkvusb-hid (real boards over hidapi) or
 * libkvusb-sim (simulated boards). The interface has no version, no sizes and no context argument,
 * so a loaded library is process-wide state with one owner, and a caller distrusts every count and
 * text that comes back.
 *
 * Threads: all calls come from one thread, one at a time.
 *
 * Exceptions: none crosses the interface, in either direction. A library must not throw: its caller
 * may be C. Quillon takes an exception for a failure of the function and shows its text.
 *
 * Blocking: DetectHID and CloseDevices return in milliseconds. WriteData blocks until the board has
 * taken the report (about 1 ms; the first one to a board may have to open it, which takes up to a
 * tenth of a second). ReadData blocks until the answer is there: about 1 ms for most commands,
 * seconds for an erase; the library gives up by itself (2 s, 10 s for an erase).
 */
#ifndef QUILLON_KVUSB_KVUSB_H_
#define QUILLON_KVUSB_KVUSB_H_

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#define KVUSB_CALL __stdcall
#else
#define KVUSB_CALL
#endif

/* May be defined as nothing by who lists the exports elsewhere. */
#ifndef KVUSB_EXPORT
#ifdef _WIN32
#define KVUSB_EXPORT __declspec(dllexport)
#else
#define KVUSB_EXPORT __attribute__((visibility("default")))
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of the packet, the one buffer that carries a request out and its answer back.
 *
 *   request   0       1       2      3    4        5         6 .. 64
 *            +-------+-------+------+----+--------+---------+--------------------+
 *            | 0     | length| start| end| command| argument| payload            |
 *            +-------+-------+------+----+--------+---------+--------------------+
 *   answer    0       1 .. 64
 *            +-------+-----------------------------------------------------------+
 *            | echo  | data                                                      |
 *            +-------+-----------------------------------------------------------+
 *
 * Byte 0 of a request is the HID report number, which the boards do not use (USB HID 1.11, 8.1);
 * the other 64 bytes are the report. The library writes the 64 bytes of the answer's report to
 * bytes 0..63 and leaves byte 64 as it was. */
#define KVUSB_PACKET_BYTES 65

/* Device types, the third argument of DetectHID. */
enum {
  KVUSB_TYPE_LOADER = 1,     /* the board runs its firmware loader ("Flash Mode") */
  KVUSB_TYPE_FIRMWARE = 2,   /* the board runs its firmware, first kind ("Device Mode") */
  KVUSB_TYPE_FIRMWARE_ID = 3 /* as 2, second kind: it also answers the identity query */
};

/* Results. Codes that are not listed count as success. */
enum {
  KVUSB_WRITE_FAILED = 1, /* WriteData: nothing was sent */
  KVUSB_READ_FAILED = 1,  /* ReadData: no answer; the buffer is as it was */
  KVUSB_READ_TIMEOUT = 4, /* ReadData: no answer in time; the buffer is as it was */
  KVUSB_OK = 0            /* what our own libraries return for a success of the two */
};

/* One board. The library fills a record in DetectHID and recognises the board by it in the other
 * functions. A byte that is not described belongs to the library; the program neither reads nor
 * writes it. Numbers are in the host's byte order. Texts are UTF-8 and end with a zero byte, but a
 * reader must not rely on either.
 *
 * offset                      filled by  */
typedef struct DeviceRecord {
  uint8_t library_a[38];    /*   0  library  private */
  uint16_t product_id;      /*  38  library  USB idProduct; the same in both modes of a board */
  uint16_t version;         /*  40  library  USB bcdDevice: version of the running program */
  uint16_t queried_version; /*  42  program  version from the identity query, 0 until answered */
  uint8_t firmware_present; /*  44  program  flag from the identity query, 1 until answered */
  uint8_t library_b[263];   /*  45  library  private */
  char product_text[260];   /* 308  library  USB iProduct, first text of the tree label */
  char manufacturer[260];   /* 568  library  USB iManufacturer */
  char serial_number[20];   /* 828  library  USB iSerialNumber, second text of the tree label */
} DeviceRecord;

/* Records that one detection writes at most: more than any bus holds. */
#define KVUSB_MOST_BOARDS 256

/* Looks for boards of one type.
 *
 * count  out: number of records written. Set by the library whenever the result is nonzero.
 * first  out: the first free record of the caller's table; the library writes `*count` records from
 *        here on. It is not told how many fit: the caller keeps room for KVUSB_MOST_BOARDS, and the
 *        library leaves out what is beyond that.
 * type   KVUSB_TYPE_...
 *
 * Returns nonzero when boards were written and counted, 0 when there is none of this type. */
typedef int32_t(KVUSB_CALL* DetectHIDFunction)(uint32_t* count, DeviceRecord* first, uint32_t type);

/* Sends the packet's 65 bytes to a board. The packet is not changed.
 * Returns KVUSB_WRITE_FAILED when nothing was sent; anything else is success. */
typedef int32_t(KVUSB_CALL* WriteDataFunction)(DeviceRecord* record, uint8_t* packet);

/* Waits for a board's answer and writes it over the packet (bytes 0..63).
 * Returns KVUSB_READ_FAILED or KVUSB_READ_TIMEOUT when there is none; anything else is success. */
typedef int32_t(KVUSB_CALL* ReadDataFunction)(DeviceRecord* record, uint8_t* packet);

/* Closes the boards of a table; their records are dead afterwards. `count` may be 0.
 * Returns 0 when closing failed. */
typedef int32_t(KVUSB_CALL* CloseDevicesFunction)(uint32_t count, DeviceRecord* first);

/* Two further functions are optional. The program looks each up by name and works without it. */

/* Events of a DeviceChangeHandler, numbered as the Windows messages for them are. */
enum { KVUSB_EVENT_ARRIVAL = 0x8000, KVUSB_EVENT_REMOVAL = 0x8004 };
enum { KVUSB_DEVICE_INTERFACE = 5 }; /* `device_type` of an event about a USB device interface */

/* Told of a board that came or went. `path` names the device interface and holds "VID_" and "PID_"
 * with four hexadecimal digits each, in either case; it is dead after the call. May be called on
 * any thread and from inside WriteData or ReadData, so a handler only takes note of it. */
typedef void(KVUSB_CALL* DeviceChangeHandler)(uint32_t event, uint32_t device_type,
                                              const char* path, void* context);

/* SetDeviceChangeHandler: names the one handler of hot-plug events, NULL for none. Once it has
 * returned, the former handler is not called any more, and no call of it is still running on
 * another thread: its context may go. Called from inside the handler, it does not wait for that
 * one call. Returns nonzero on success; NULL always succeeds. */
typedef int32_t(KVUSB_CALL* SetDeviceChangeHandlerFunction)(DeviceChangeHandler handler,
                                                            void* context);

/* Kinds of problems, as far as the program can help with them. */
enum {
  KVUSB_PROBLEM_NONE = 0,
  KVUSB_PROBLEM_OTHER = 1,      /* as are all codes that are not listed */
  KVUSB_PROBLEM_PERMISSION = 2, /* the system does not let this user open the board */
  KVUSB_PROBLEM_IN_USE = 3      /* another program holds the board */
};

/* DescribeProblem: a sentence (UTF-8, zero-terminated, cut to `size` bytes) on what keeps the
 * library (record NULL) or one board from working, for the user to read.
 * Returns the kind of the problem; KVUSB_PROBLEM_NONE, with an empty text, when all is well. */
typedef int32_t(KVUSB_CALL* DescribeProblemFunction)(const DeviceRecord* record, char* text,
                                                     uint32_t size);

#ifdef __cplusplus
}
#define KVUSB_ASSERT static_assert
#else
#define KVUSB_ASSERT _Static_assert
#endif

KVUSB_ASSERT(sizeof(DeviceRecord) == 848, "a record has 848 bytes");
KVUSB_ASSERT(offsetof(DeviceRecord, product_id) == 38, "product id stands at 38");
KVUSB_ASSERT(offsetof(DeviceRecord, version) == 40, "version stands at 40");
KVUSB_ASSERT(offsetof(DeviceRecord, queried_version) == 42, "queried version stands at 42");
KVUSB_ASSERT(offsetof(DeviceRecord, firmware_present) == 44, "firmware flag stands at 44");
KVUSB_ASSERT(offsetof(DeviceRecord, product_text) == 308, "product text stands at 308");
KVUSB_ASSERT(offsetof(DeviceRecord, manufacturer) == 568, "manufacturer stands at 568");
KVUSB_ASSERT(offsetof(DeviceRecord, serial_number) == 828, "serial number stands at 828");

#undef KVUSB_ASSERT

#endif /* QUILLON_KVUSB_KVUSB_H_ */
