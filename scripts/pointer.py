#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A mouse for a compositor without devices: plugged in until standard input ends, and moved and
clicked as its lines say, "<x> <y> <button> <times>" in pixels of the screen. Buttons 4 and 5 turn the
wheel up and down, a step each time.
Usage: pointer.py <width> <height> (of the screen)
"""
import os
import socket
import struct
import sys
import time

BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}  # left, middle, right
WHEEL = {4: -1, 5: 1}
CLICK_MILLISECONDS = 30
MANAGER = 'zwlr_virtual_pointer_manager_v1'

DISPLAY = 1  # the object that every connection begins with
# The requests used, by their numbers at their objects.
SYNC, GET_REGISTRY, BIND, CREATE_POINTER = 0, 1, 0, 0
MOVE_TO, BUTTON, FRAME, TURN = 1, 2, 4, 7
UPRIGHT = 0  # an axis of the wheel
STEP = 15 << 8  # how far a step goes, in 256ths


def text(value):
    """A string as messages hold it: its length, itself, and zeros up to a whole word."""
    data = value.encode() + b'\0'
    return struct.pack('=I', len(data)) + data + b'\0' * (-len(data) % 4)


class Connection:
    """Sends requests to the compositor and reads its events."""

    def __init__(self):
        path = os.path.join(os.environ['XDG_RUNTIME_DIR'], os.environ['WAYLAND_DISPLAY'])
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.socket.connect(path)
        self.objects = DISPLAY

    def new_object(self):
        self.objects += 1
        return self.objects

    def send(self, target, request, *words, data=b''):
        body = data + b''.join(struct.pack('=I', word) for word in words)
        self.socket.sendall(struct.pack('=II', target, (8 + len(body)) << 16 | request) + body)

    def read(self, size):
        data = b''
        while len(data) < size:
            block = self.socket.recv(size - len(data))
            if not block:
                sys.exit('pointer: the compositor has gone')
            data += block
        return data

    def event(self):
        source, head = struct.unpack('=II', self.read(8))
        return source, head & 0xFFFF, self.read((head >> 16) - 8)

    def finish(self):
        """Waits until all requests are carried out; returns the events that come meanwhile."""
        callback = self.new_object()
        self.send(DISPLAY, SYNC, callback)
        events = []
        while True:
            source, number, body = self.event()
            if source == callback:
                return events
            if source == DISPLAY and number == 0:
                sys.exit(f'pointer: refused: {body!r}')
            events.append((source, body))


class Pointer:
    """A mouse on a screen of the given size."""

    def __init__(self, size):
        self.size = size
        self.connection = Connection()
        registry = self.connection.new_object()
        self.connection.send(DISPLAY, GET_REGISTRY, registry)
        number = self.number_of_manager(registry)
        manager = self.connection.new_object()
        self.connection.send(registry, BIND, 1, manager, data=number + text(MANAGER))
        self.pointer = self.connection.new_object()
        self.connection.send(manager, CREATE_POINTER, 0, self.pointer)
        self.connection.finish()
        self.time = 0

    def number_of_manager(self, registry):
        for source, body in self.connection.finish():
            if source == registry and body[4:].startswith(text(MANAGER)):
                return body[:4]
        sys.exit('pointer: the compositor has no virtual pointers')

    def send(self, request, *words):
        self.connection.send(self.pointer, request, self.time & 0xFFFFFFFF, *words)
        self.connection.send(self.pointer, FRAME)
        self.connection.finish()

    def click(self, x, y, button, times):
        """Says itself how quick it is: a double click is one on a busy machine, too."""
        self.time = max(self.time, time.monotonic_ns() // 1000000)
        self.send(MOVE_TO, x, y, *self.size)
        for _ in range(times):
            if button in WHEEL:
                self.turn(WHEEL[button])
                continue
            for pressed in (1, 0):
                self.time += CLICK_MILLISECONDS
                self.send(BUTTON, BUTTONS[button], pressed)

    def turn(self, step):
        self.time += CLICK_MILLISECONDS
        self.send(TURN, UPRIGHT, step * STEP & 0xFFFFFFFF, step & 0xFFFFFFFF)


def main():
    pointer = Pointer([int(word) for word in sys.argv[1:3]])
    for line in sys.stdin:
        pointer.click(*[int(word) for word in line.split()])


main()
