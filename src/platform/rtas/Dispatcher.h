/* The C road by which a host reaches a plug-in module and the instances in it.
 *
 * Module loaded: look up the four entry points, NewMachOPlugIn(NULL), RTAS_GET_GROUP_INFO to see
 * what it is. Instance: RTAS_NEW_PROCESS, then any number of RTAS_RENDER (audio thread), controls,
 * chunks and rates (main thread), RTAS_DELETE_PROCESS. Module unloaded: all instances deleted,
 * CloseMachOPlugIn.
 *
 * Every call names the version that the caller was built with. Every structure is plain C, begins
 * with its size in bytes, set by the caller, and is the caller's; texts that come out are UTF-8,
 * end with a zero and fit the room that the caller tells, or are cut. Controls count from 1, and
 * their values span all of int32_t, from the bottom of their range to its top. */
#pragma once

#include <stdint.h>

#if defined(__cplusplus)
extern "C" {
#endif

#define RTAS_DISPATCHER_VERSION 1

/* What Dispatcher returns; a number below -1000 is one of the library's own, such as a chunk's. */
enum {
    RTAS_OK = 0,
    RTAS_WRONG_VERSION = -1,
    RTAS_UNKNOWN_OPERATION = -2,
    RTAS_WRONG_ARGUMENT = -3,
    /* NewMachOPlugIn has not been called, or failed. */
    RTAS_NO_GROUP = -4,
    /* An instance could not be made. */
    RTAS_NO_PROCESS = -5
};

/* Each with the structure that its argument points to. */
enum {
    RTAS_GET_GROUP_INFO = 1,         /* RTASGroupInfo */
    RTAS_GET_TYPE_INFO = 2,          /* RTASTypeInfo */
    RTAS_NEW_PROCESS = 10,           /* RTASNewProcess */
    RTAS_DELETE_PROCESS = 11,        /* RTASProcessCall */
    RTAS_SET_SAMPLE_RATE = 12,       /* RTASProcessCall, value: hertz */
    RTAS_RENDER = 13,                /* RTASRender */
    RTAS_GET_DELAY = 14,             /* RTASProcessCall, value comes out: samples */
    RTAS_GET_CONTROL_COUNT = 20,     /* RTASProcessCall, value comes out */
    RTAS_GET_CONTROL_INFO = 21,      /* RTASControlInfo */
    RTAS_GET_CONTROL_NAME = 22,      /* RTASControlText */
    RTAS_GET_CONTROL_VALUE = 23,     /* RTASControlText, value comes out */
    RTAS_SET_CONTROL_VALUE = 24,     /* RTASControlText, value goes in */
    RTAS_CONTROL_VALUE_TO_TEXT = 25, /* RTASControlText, value goes in, text comes out */
    RTAS_CONTROL_TEXT_TO_VALUE = 26, /* RTASControlText, text goes in, value comes out */
    RTAS_GET_CHANGE_COUNT = 30,      /* RTASProcessCall, value comes out */
    RTAS_GET_CHUNK_CODE = 31,        /* RTASChunk, code comes out for the index */
    RTAS_GET_CHUNK_SIZE = 32,        /* RTASChunk, recordSize comes out */
    RTAS_GET_CHUNK = 33,             /* RTASChunk, record comes out */
    RTAS_SET_CHUNK = 34,             /* RTASChunk, record goes in */
    RTAS_COMPARE_CHUNK = 35,         /* RTASChunk, record goes in, isEqual comes out */
    RTAS_QUERY_TABLE = 36,           /* RTASTable */
    RTAS_PLUGIN_COMMAND = 40         /* RTASPluginCommand */
};

typedef struct RTASProcess RTASProcess; /* An instance. */

typedef struct RTASGroupInfo {
    uint32_t size;
    uint32_t manufacturerId; /* A four-character code, the first character in the highest byte. */
    uint32_t productId;      /* Likewise. */
    int32_t typeCount;
    char manufacturerName[64];
    /* Five lines: the name, then forms of at most 16, 12, 8 and 4 characters. */
    char productNames[128];
} RTASGroupInfo;

typedef struct RTASTypeInfo {
    uint32_t size;
    int32_t index; /* In: from 0. */
    int32_t typeId;
    uint32_t productId;
    uint32_t category;
    int32_t inputStem;
    int32_t outputStem;
    int32_t inputChannels;
    int32_t outputChannels;
} RTASTypeInfo;

/* What a plug-in does to its own controls, as the host hears it; on the thread that does it, which
 * may be the audio thread. Each function may be null. */
typedef struct RTASHostCalls {
    void* context;
    void (*controlChanged)(void* context, int32_t control, int32_t value);
    void (*controlTouched)(void* context, int32_t control);
    void (*controlReleased)(void* context, int32_t control);
} RTASHostCalls;

typedef struct RTASNewProcess {
    uint32_t size;
    int32_t typeIndex;
    int32_t sampleRate;   /* Hertz. */
    int32_t maxBlockSize; /* Samples. A larger block is rendered, but may allocate. */
    int32_t inputs;       /* Channels that the host connects, at most 64; any type takes any. */
    int32_t outputs;
    int32_t isAudioSuite; /* Offline: no MIDI, no transport. */
    RTASHostCalls calls;
    RTASProcess* process; /* Out. */
} RTASNewProcess;

typedef struct RTASProcessCall {
    uint32_t size;
    RTASProcess* process;
    int32_t value;
} RTASProcessCall;

typedef struct RTASMIDIEvent {
    int32_t offset; /* Samples from the start of the block. */
    int32_t length; /* Bytes, at most 4. */
    uint8_t data[4];
} RTASMIDIEvent;

typedef struct RTASTransport {
    int32_t isPlaying;
    double tempo; /* Quarter notes a minute. */
    int32_t meterNumerator;
    int32_t meterDenominator;
    int64_t samplePosition;
    int64_t tickPosition; /* 960000 a quarter note. */
    int32_t isLooping;
    int64_t loopStartTicks;
    int64_t loopEndTicks;
} RTASTransport;

typedef struct RTASRender {
    uint32_t size;
    RTASProcess* process;
    float* const* inputs; /* As many as the host connects; may be the outputs. */
    float* const* outputs;
    int32_t numSamples;          /* From 0. */
    const RTASMIDIEvent* midiIn; /* In order of offset, all within the block; null for none. */
    int32_t midiInCount;
    RTASMIDIEvent* midiOut; /* Room for midiOutRoom events; null for none. */
    int32_t midiOutRoom;
    int32_t midiOutCount;           /* Out. */
    const RTASTransport* transport; /* Null for none. */
} RTASRender;

typedef struct RTASControlInfo {
    uint32_t size;
    RTASProcess* process;
    int32_t control; /* In. */
    int32_t steps;
    int32_t isContinuous;
    int32_t isAutomatable;
    int32_t defaultValue;
    int32_t isMasterBypass;
    int32_t isSpecial; /* The master bypass, and controls that the plug-in alone moves. */
} RTASControlInfo;

typedef struct RTASControlText {
    uint32_t size;
    RTASProcess* process;
    int32_t control;
    int32_t value;
    /* In characters: what the text may have. The room has one more, for the zero. */
    int32_t length;
    char* text;
} RTASControlText;

typedef struct RTASChunk {
    uint32_t size;
    RTASProcess* process;
    int32_t index; /* For RTAS_GET_CHUNK_CODE: from 0. */
    uint32_t code; /* A four-character code. */
    /* 56 bytes of header, which begin with the size, then the data; aligned as an int32_t. A state
     * may grow while it is played: RTAS_GET_CHUNK refuses too little room and touches nothing. */
    void* record;
    int32_t recordSize; /* In bytes: the room of the record, or what it has. */
    int32_t isEqual;
} RTASChunk;

typedef struct RTASTable {
    uint32_t size;
    RTASProcess* process;
    uint32_t selector;
    const void* table; /* Out: the plug-in's, as long as the instance lives; null for none. */
    int32_t tableSize; /* In bytes. */
} RTASTable;

/* Operations of the plug-in's own, which no library knows, by the names that it documents. What
 * comes out is valid until the next command of the instance. */
typedef struct RTASPluginCommand {
    uint32_t size;
    RTASProcess* process;
    const char* name;
    const char* argument; /* May be null. */
    int32_t succeeded;
    const char* result; /* A text, or what went wrong in one line. */
} RTASPluginCommand;

/* The four entry points of a module. The first returns 0, or what kept it from starting; the second
 * deletes the instances that are left. */
int32_t NewMachOPlugIn(void* bundle);
int32_t CloseMachOPlugIn(void);
int32_t Dispatcher(int32_t version, int32_t operation, void* argument);
/* Commands to hardware that this module doesn't run on: always RTAS_UNKNOWN_OPERATION. */
int32_t CDSPDoHostCommand(int32_t command, void* argument);

#if defined(__cplusplus)
}
#endif
