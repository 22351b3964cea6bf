"""The command, which works out every number of the add-in's functions."""
import json
import subprocess


def texts(catalogue):
    """The families of the catalogue with an entry for each text: a function and its twin are one, as on the sheets."""
    entries = {entry['name']: entry for entry in catalogue['functions']}
    families = []
    for family in catalogue['families']:
        functions = []
        for entry in map(entries.get, family['functions']):
            if functions and entry['name'] == functions[-1]['twin']:
                functions[-1]['functions'].append(entry['name'])
            else:
                arguments = [{**one, 'unit': one['unitName'] or one['unit']} for one in entry['arguments']]
                functions.append({**entry, 'functions': [entry['name']], 'arguments': arguments})
            results = {one['selector']: one for one in entry['results']}
            known = functions[-1]['results'] = functions[-1]['results'] if len(functions[-1]['functions']) > 1 else []
            for one in known:
                if results.pop(one['selector'], None) is not None:
                    one['functions'].append(entry['name'])
            known.extend({**one, 'functions': [entry['name']]} for one in results.values())
        families.append({'title': family['title'], 'functions': functions})
    return families


class Command:
    def __init__(self, path):
        self.path = path
        self.answers = {}
        listed = subprocess.run([path, '--catalogue'], capture_output=True, text=True, check=True).stdout
        self.families = texts(json.loads(listed))

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
