#pragma once
/// The IP helper's table of the machine's IPv4 addresses.
#include "substitute/types.h"

struct MIB_IPADDRROW {
    DWORD dwAddr;
    DWORD dwIndex;
    DWORD dwMask;
    DWORD dwBCastAddr;
    DWORD dwReasmSize;
    WORD unused1;
    WORD wType;
};
struct MIB_IPADDRTABLE {
    DWORD dwNumEntries;
    MIB_IPADDRROW table[1];
};

/// Fills `table`, `*size` octets large; ERROR_INSUFFICIENT_BUFFER with the size needed when it is too small.
DWORD GetIpAddrTable(MIB_IPADDRTABLE* table, ULONG* size, BOOL order);
