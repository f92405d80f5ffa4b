#pragma once

#include "defectmap.h"
#include "mapformat.h"

#include <cstdint>
#include <functional>
#include <vector>

// Device registers of the defect maps of cameras without file-access map slots.
constexpr unsigned long kMapRegControl = 0x10004000;     // bit 0: correction enabled
constexpr unsigned long kMapRegSelectedSlot = 0x10004014;
constexpr unsigned long kMapRegClearSlot = 0x10004018;   // writing a slot number clears it
constexpr unsigned long kMapRegMapSize = 0x1000401C;
constexpr unsigned long kMapRegMapMaxSize = 0x10004020;
constexpr unsigned long kMapRegEntries = 0x10025000;     // one 32-bit word per entry
// The word after the last entry of a map read from the device.
constexpr uint32_t kMapWordEnd = 0xFFFFFFFF;

// Address of entry register index.
unsigned long mapEntryRegister(unsigned int index);

// The entry word of register access: X | Y << 16, or for typed maps
// X | Y << 14 | (type - 100) << 28.
uint32_t packMapWord(const t_defpix& entry, bool typed);
t_defpix unpackMapWord(uint32_t word, bool typed);

// Words of a map as the device takes them in one block write. Typed maps send
// only the entries with a code above 99, the others only entries with a type
// below 4. Words are byte-swapped for a big-endian device. Packing stops when
// capacity words are filled; the rest of the map is dropped. progress is told
// i * 100.0 / count before entry i is looked at.
std::vector<uint32_t> packRegisterMap(const t_defpix* map, unsigned int count, bool typed, bool bigEndian,
                                      unsigned int capacity, const std::function<void(double)>& progress = {});

// Adds the entries of words read from the device to the map (duplicate and
// capacity rules of defpix_add) until the end word; words of a big-endian
// device are byte-swapped first.
void unpackRegisterMap(const uint32_t* words, size_t wordCount, bool typed, bool bigEndian, t_defpix* map,
                       unsigned int capacity, unsigned int& count);
