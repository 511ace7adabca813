/* SPDX-License-Identifier: MIT */
/* practitioners_host <folder>: an application that lets its user choose a practitioner of the table
   in the volume "Data" of that folder, and writes "chosen <entry>", as ASCII with \xNN for every
   other byte. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

int main(int argc, char **argv) {
  if (argc != 2) return 2;
  strncpy(szVolumes, argv[1], sizeof szVolumes - 1);
  const char *entry = SelectMT(0, 0, "Data:");
  printf("chosen ");
  for (; *entry; entry++) {
    unsigned char byte = (unsigned char)*entry;
    if (byte >= 0x20 && byte < 0x7F) {
      putchar(byte);
    } else {
      printf("\\x%02X", byte);
    }
  }
  putchar('\n');
  return 0;
}
