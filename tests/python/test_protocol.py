"""Random calls of random signatures, checked against the protocol as its rules say it, with lists of names and counters."""

import random

from probe import shelf

KINDS = {"int": int, "text": str}
WANTED_BY_POSITION = {"int": "int32", "text": "string"}
NAMES = {"int": "number", "text": "string", int: "number", str: "string"}


class Model:
    """The protocol, word for word."""

    def __init__(self, positional, keywords):
        self.positional, self.keywords = positional, keywords

    def begin(self):
        self.cursor = self.required = self.requested = self.gets = self.by_keyword = 0
        self.error = self.failure = self.miss = 0
        self.optional = False
        self.found = self.expected = self.current = ""
        self.unconsumed = sorted(self.keywords)

    def fetch(self, value, kind, wanted):
        """Whether the value fits; what is wrong is noted otherwise."""
        fits = type(value) is KINDS[kind]
        if not fits:
            self.expected, self.found = wanted[kind], NAMES[type(value)]
        return fits

    def get(self, kind, keyword):
        result = KINDS[kind](-1)
        pending = keyword in self.unconsumed
        supplied = self.error == 0 and self.cursor < len(self.positional)
        if supplied or keyword is None:
            if supplied and self.fetch(self.positional[self.cursor], kind, WANTED_BY_POSITION):
                result = self.positional[self.cursor]
            elif supplied:
                self.error = self.cursor + 1
            self.cursor += 1
        elif self.error == 0 and pending and self.fetch(self.keywords[keyword], kind, NAMES):
            result = self.keywords[keyword]
        elif self.error == 0:
            self.current = keyword
            if not pending:
                self.expected = self.found = "Undetermined"
            if pending or not self.optional:
                self.error = self.failure = self.gets + 1
            else:
                self.miss = self.gets + 1
        if pending and not (supplied or keyword is None):
            self.by_keyword += not self.optional
            self.unconsumed.remove(keyword)
        self.gets += 1
        self.requested += 1
        self.required += not self.optional
        return result

    def error_on_previous(self):
        return self.gets != 0 and self.gets in (self.failure, self.miss)

    def alternative(self):
        if self.error_on_previous():
            self.miss = self.failure = 0
            if self.current in self.keywords:
                self.by_keyword -= not self.optional
                self.unconsumed.append(self.current)
            self.current = ""
        elif self.failure or self.gets > len(self.positional) or self.error == 0 or self.error != self.cursor:
            return False
        else:
            self.cursor -= 1
        self.error = 0
        self.found = self.expected = ""
        self.gets -= 1
        self.requested -= 1
        self.required -= not self.optional
        return True

    def end(self):
        if self.unconsumed:
            return f"256 fkeyword error on {self.unconsumed[0]}"
        if self.error and (self.current == "" or self.found != "Undetermined"):
            place = f"268 f['{self.current}']" if self.current else f"262 f[{self.error - 1}]"
            return f"{place}; found {self.found}, expecting {self.expected}"
        given = len(self.positional) + self.by_keyword
        if given < self.required:
            return f"276 f; not all required arguments specified; expected {self.required}, got {given}"
        given = len(self.positional) + len(self.keywords)
        return f"282 f; too many arguments; expected {self.requested}, got {given}" if given > self.requested else ""


def random_call(chance):
    """A call, its steps and what they give."""

    def value():
        return chance.choice((int, str))(chance.randrange(4))

    def step(text, result):
        steps.append(text)
        results.extend((int(result) if type(result) is bool else result, int(model.error_on_previous()),
                        int(model.error != 0 or model.end() != "")))
        return result

    def get():
        kind, keyword = chance.choice(("int", "text")), chance.choice((None, *"abcdea"))
        step(kind if keyword is None else f"{kind}:{keyword}", model.get(kind, keyword))

    model = Model([value() for _ in range(chance.randrange(4))],
                  {chance.choice("abcde"): value() for _ in range(chance.randrange(4))})
    steps, results = [], []
    for _ in range(2):  # a call can be read again
        step("begin", model.begin() or 0)
        step("alternative", model.alternative())
        for _ in range(chance.randrange(6)):
            if chance.randrange(3) == 0:
                model.optional = True
                step("optional", 0)
            get()
            while chance.randrange(2) and step("alternative", model.alternative()):
                get()
    end = model.end()
    return (model.positional, model.keywords, steps), [*results, end and "source/omu/impl/omu_Arguments:" + end]


def test_random_calls_of_random_signatures_agree_with_the_rules():
    for seed in range(3000):
        call, results = random_call(random.Random(seed))
        assert shelf.protocol(*call) == results, call
