"""The command, which works out every number of the add-in's functions."""
import json
import subprocess


class Command:
    def __init__(self, path):
        self.path = path
        self.answers = {}
        self.catalogue = json.loads(subprocess.run([path, '--catalogue'], capture_output=True, text=True, check=True).stdout)

    def price(self, calls):
        """Works the calls out, such as EURO(100.0,95.0,...); their answers are then in `answers`."""
        done = subprocess.run([self.path], input='\n'.join(calls) + '\n', capture_output=True, text=True)
        lines = done.stdout.splitlines()
        if len(lines) != len(calls):
            raise RuntimeError(f'{len(calls)} calls, {len(lines)} answers: {done.stderr}')
        for call, line in zip(calls, lines):
            try:
                self.answers[call] = float(line)
            except ValueError:
                raise RuntimeError(f'={call} is {line}') from None
