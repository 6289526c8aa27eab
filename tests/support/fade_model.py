"""What one cue list puts on the wire, reckoned apart from the desk: fades, merge and frames, instant by instant."""

import struct

CHANNELS = 512
FULL = 255
SEND, FADE, MERGE = 30, 30, 40  # ms


def single(value):
    """The nearest 32-bit float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


class OutOfRange(Exception):
    pass


class Fade:
    """A crossfade from one look to another; times in seconds."""

    def __init__(self, start, old, new, up, down, delay):
        self.old, self.new = old, new
        self.up, self.down, self.delay = 1000 * up, 1000 * down, 1000 * delay
        self.down_end = start + self.down
        self.up_start = start + self.delay
        self.end = self.up_start + self.up
        self.gone = 0.0

    def resume(self, now):
        """Goes on where the falling look stopped; the rising one follows from that."""
        self.down_end = now + round(single((100 - self.gone) / 100) * self.down)
        self.up_start = self.down_end - self.down + self.delay
        self.end = self.up_start + self.up

    @staticmethod
    def done(left, span):
        """Percent of a ramp that is behind us."""
        if span == 0:
            return 100.0
        return single(100 - single(single(left / span) * 100))

    def mix(self, now, levels):
        falling = rising = 0
        if now <= self.down_end:
            self.gone = self.done(self.down_end - now, self.down)
            falling = FULL - round(self.gone / 100 * FULL)
        if self.up_start <= now <= self.end:
            rising = round(self.done(self.end - now, self.up) / 100 * FULL)
        for channel, (old, new) in enumerate(zip(self.old, self.new)):
            a, b = round(falling * old / FULL), round(rising * new / FULL)
            if falling + rising <= FULL:
                out = a + b
            elif a >= b:
                out = a + (FULL - falling) * new
            else:
                out = b + (FULL - rising) * old
            if out > 32767:
                raise OutOfRange
            levels[channel if out <= FULL else CHANNELS - 1] = out
            if out > FULL:
                return


class Model:
    """`commands` are (ms, function of the model); frames and boxes are what comes of them."""

    def __init__(self):
        self.levels = [0] * CHANNELS
        self.output = [0] * CHANNELS
        self.fade = None
        self.next_tick = None
        self.faulty = set()
        self.frames = []
        self.boxes = []

    def jump(self, new):
        self.levels = list(new)

    def go(self, now, *times_and_looks):
        self.fade = Fade(now, *times_and_looks)
        self.begin_ticks(now)

    def stop(self):
        self.next_tick = None

    def resume(self, now):
        self.fade.resume(now)
        self.begin_ticks(now)

    def begin_ticks(self, now):
        if self.next_tick is None:
            self.next_tick = now + FADE

    def run(self, commands, until):
        commands = list(commands)
        for now in range(until + 1):
            while commands and commands[0][0] == now:
                commands.pop(0)[1](self)
            if now == 0:
                continue
            if now % SEND == 0:
                self.output = [2 if level == 1 else level for level in self.output]
                self.frames.append((now, list(self.output)))
            if now == self.next_tick:
                self.once_per_onset(now, "fade", self.tick)
            if now % MERGE == 0:
                self.once_per_onset(now, "merge", self.merge)
        return self

    def tick(self, now):
        if now >= self.fade.end:
            self.next_tick = None
            return
        self.next_tick = now + FADE
        self.fade.mix(now, self.levels)

    def merge(self, _):
        for channel, level in enumerate(self.levels):
            if not 0 <= level <= FULL:
                raise OutOfRange
            self.output[channel] = level

    def once_per_onset(self, now, what, work):
        try:
            work(now)
            self.faulty.discard(what)
        except OutOfRange:
            if what not in self.faulty:
                self.boxes.append(now)
            self.faulty.add(what)
