// Formats console calls and uncaught errors of a page as lines of text.
//
// Evaluates to a function that is called once for each frame, before any script of the page. `native` provides
// print(level, text, source), and optionally place(text), which maps a position (URL:LINE:COLUMN) to the author's
// source. Only the runtime calls the functions of the result. JSON, String and the functions of Object are read here, while
// they are still the engine's own; the methods of arrays, texts and Maps are those of the moment. A line that can't be
// formatted, since the page has broken them or for another reason, becomes a short text, never an exception.
(function (native) {
  'use strict';

  var stringify = JSON.stringify;
  var toText = String;
  var apply = Function.prototype.call.bind(Function.prototype.apply);
  var classOf = Function.prototype.call.bind(Object.prototype.toString);
  var descriptor = Object.getOwnPropertyDescriptor;
  var keysOf = Object.keys;
  var now = performance.now.bind(performance);
  var placeOf =
    native.place ||
    function (place) {
      return place;
    };
  var deepest = 4;
  var mostEntries = 100;

  // The name and position of each call in a stack, innermost first, without calls in the runtime's scripts. Engines
  // write "name@place" or "    at name (place)".
  function framesOf(error) {
    return toText((error && error.stack) || '')
      .split('\n')
      .map(function (line) {
        var parts = /^\s*(?:at (?:(.*?) \()?|(?:(.*)@)?)((?:[\w+.-]+:\/|blob:|about:|<).*?:\d+:\d+)\)?$/.exec(
          line
        );
        return parts && { name: parts[1] || parts[2] || '', place: placeOf(parts[3]) };
      })
      .filter(Boolean);
  }

  // Also recognizes errors of another window.
  function isError(value) {
    return value instanceof Error || /^\[object (Error|DOMException)\]$/.test(classOf(value));
  }

  function stackOf(frames) {
    return frames
      .map(function (frame) {
        return '\n    at ' + (frame.name ? frame.name + ' (' + frame.place + ')' : frame.place);
      })
      .join('');
  }

  // The message and position in one line, followed by the stack if it has further calls.
  function describe(error, message, place) {
    var frames = framesOf(error);
    var where = place || (frames[0] && frames[0].place);
    var text = message + (where ? ' (' + where + ')' : '') + (frames.length > 1 ? stackOf(frames) : '');
    var cause = error.cause;
    return isError(cause) && cause !== error ? text + '\ncaused by ' + errorText(cause) : text;
  }

  function errorText(error) {
    return describe(error, toText(error));
  }

  function elementText(element) {
    var text = '<' + element.localName;
    ['id', 'class', 'name', 'src', 'href'].forEach(function (name) {
      var value = element.getAttribute(name);
      if (value) text += ' ' + name + '=' + stringify(value);
    });
    return text + '>';
  }

  // Formats the first entries of a list with `describeEntry`.
  function entries(list, describeEntry) {
    var texts = list.slice(0, mostEntries).map(describeEntry);
    if (list.length > mostEntries) texts.push('… ' + (list.length - mostEntries) + ' more');
    return texts.join(',');
  }

  function collectionText(value, name, inner) {
    var list = [];
    value.forEach(function (item, key) {
      list.push(name === 'Map' ? inner(key) + ' => ' + inner(item) : inner(item));
    });
    return name + '(' + list.length + ') {' + entries(list, toText) + '}';
  }

  // Getters are not called, because they may have side effects.
  function membersText(value, inner) {
    return entries(keysOf(value), function (key) {
      var property = descriptor(value, key);
      return stringify(key) + ':' + (property && property.get ? '(getter)' : inner(value[key]));
    });
  }

  function constructorName(value) {
    var prototype = Object.getPrototypeOf(value);
    var maker = prototype && descriptor(prototype, 'constructor');
    var name = (maker && typeof maker.value === 'function' && maker.value.name) || '';
    return name === 'Object' ? '' : name;
  }

  // Formatters, by class name, for objects whose own properties don't describe them.
  var special = {
    Date: function (value) {
      return isNaN(value) ? 'Invalid Date' : value.toISOString();
    },
    RegExp: toText,
    Map: function (value, inner) {
      return collectionText(value, 'Map', inner);
    },
    Set: function (value, inner) {
      return collectionText(value, 'Set', inner);
    },
  };

  function objectText(value, outer) {
    if (isError(value)) return outer.length > 0 ? toText(value) : errorText(value);
    if (value.nodeType === 1 && typeof value.localName === 'string') return elementText(value);
    var name = classOf(value).slice(8, -1);
    if (outer.indexOf(value) >= 0) return '(circular)';
    if (outer.length >= deepest) return Array.isArray(value) ? '[…]' : '{…}';
    var inner = function (member) {
      return inspect(member, outer.concat([value]));
    };
    if (Object.prototype.hasOwnProperty.call(special, name)) return special[name](value, inner);
    if (Array.isArray(value)) return '[' + entries(value, inner) + ']';
    if (ArrayBuffer.isView(value) && name !== 'DataView')
      return name + ' [' + entries([].slice.call(value), inner) + ']';
    var title = constructorName(value);
    return (title ? title + ' ' : '') + '{' + membersText(value, inner) + '}';
  }

  // `outer` lists the objects that contain the value, outermost first.
  function inspect(value, outer) {
    if (typeof value === 'string') return stringify(value);
    if (typeof value === 'bigint') return toText(value) + 'n';
    if (typeof value === 'function') return 'function ' + value.name + '()';
    return typeof value === 'object' && value !== null ? objectText(value, outer) : toText(value);
  }

  function plain(value) {
    return typeof value === 'string' ? value : inspect(value, []);
  }

  var specifiers = {
    s: plain,
    d: function (value) {
      return toText(typeof value === 'symbol' ? NaN : Number(value));
    },
    i: function (value) {
      return toText(typeof value === 'symbol' ? NaN : parseInt(value, 10));
    },
    f: function (value) {
      return toText(typeof value === 'symbol' ? NaN : parseFloat(value));
    },
    o: function (value) {
      return inspect(value, []);
    },
    c: function () {
      return '';
    },
  };
  specifiers.O = specifiers.o;

  // Formats the arguments of a console method.
  function format(values) {
    var rest = [].slice.call(values);
    if (typeof rest[0] === 'string' && rest.length > 1) {
      var pattern = rest.shift();
      var text = pattern.replace(/%([sdifoOc%])/g, function (all, letter) {
        if (letter === '%') return '%';
        return rest.length > 0 ? specifiers[letter](rest.shift()) : all;
      });
      rest.unshift(text);
    }
    return rest.map(plain).join(' ');
  }

  // Formats data as a table with the keys of its rows and columns.
  function table(data) {
    if (typeof data !== 'object' || data === null) return plain(data);
    var names = [];
    var cellsOf = function (row) {
      return typeof row === 'object' && row !== null ? row : { Value: row };
    };
    var keys = keysOf(data).slice(0, mostEntries);
    keys.forEach(function (key) {
      keysOf(cellsOf(data[key])).forEach(function (name) {
        if (names.indexOf(name) < 0) names.push(name);
      });
    });
    var rows = keys.map(function (key) {
      var cells = cellsOf(data[key]);
      return [key].concat(
        names.map(function (name) {
          return name in cells ? plain(cells[name]) : '';
        })
      );
    });
    return aligned([['(index)'].concat(names)].concat(rows));
  }

  function aligned(rows) {
    var widths = rows[0].map(function (_, column) {
      return Math.max.apply(
        null,
        rows.map(function (row) {
          return row[column].length;
        })
      );
    });
    return rows
      .map(function (row) {
        var cells = row.map(function (cell, column) {
          return cell + ' '.repeat(widths[column] - cell.length);
        });
        return cells.join('  ').trimEnd();
      })
      .join('\n');
  }

  // Set during formatting, because code of the page that formatting calls could log recursively.
  var isPrinting = false;

  // `makeText` returns the text of a line, or undefined for no line.
  function print(level, source, makeText) {
    if (isPrinting) return;
    isPrinting = true;
    var text = '(no text)';
    try {
      text = makeText();
    } catch (error) {
      // Keeps the placeholder text.
    }
    isPrinting = false;
    if (text !== undefined) native.print(level, text, source);
  }

  var indent = '';
  var counts = new Map();
  var timers = new Map();

  function labelOf(values) {
    return values.length > 0 && values[0] !== undefined ? toText(values[0]) : 'default';
  }

  function elapsed(values, isLast) {
    var label = labelOf(values);
    if (!timers.has(label)) return 'There is no timer "' + label + '".';
    var text = label + ': ' + (now() - timers.get(label)).toFixed(1) + ' ms';
    if (isLast) timers.delete(label);
    return values.length > 1 ? text + ' ' + format([].slice.call(values, 1)) : text;
  }

  function group(values) {
    var text = values.length > 0 ? indented(format(values)) : undefined;
    indent += '  ';
    return text;
  }

  function indented(text) {
    return indent + text.split('\n').join('\n' + indent);
  }

  function counted(values) {
    var label = labelOf(values);
    counts.set(label, (counts.get(label) || 0) + 1);
    return label + ': ' + counts.get(label);
  }

  // The level of each method, and a function that returns its text, or undefined for no line.
  var methods = {
    log: ['log', format],
    info: ['info', format],
    warn: ['warn', format],
    error: ['error', format],
    debug: ['debug', format],
    dir: [
      'log',
      function (values) {
        return inspect(values[0], []);
      },
    ],
    dirxml: ['log', format],
    table: [
      'log',
      function (values) {
        return table(values[0]);
      },
    ],
    trace: [
      'log',
      function (values) {
        return 'Trace: ' + format(values) + stackOf(framesOf(new Error()));
      },
    ],
    assert: [
      'error',
      function (values) {
        var rest = [].slice.call(values, 1);
        if (!values[0]) return 'Assertion failed' + (rest.length > 0 ? ': ' + format(rest) : '');
      },
    ],
    count: ['log', counted],
    countReset: [
      'log',
      function (values) {
        counts.delete(labelOf(values));
      },
    ],
    time: [
      'log',
      function (values) {
        timers.set(labelOf(values), now());
      },
    ],
    timeLog: ['log', elapsed],
    timeEnd: [
      'log',
      function (values) {
        return elapsed(values, true);
      },
    ],
  };

  function forward(name, makeLine) {
    var original = console[name];
    if (typeof original !== 'function') return;
    console[name] = function () {
      makeLine(arguments);
      return apply(original, console, arguments);
    };
  }

  function forwardConsole() {
    keysOf(methods).forEach(function (name) {
      var level = methods[name][0];
      var makeText = methods[name][1];
      forward(name, function (values) {
        print(level, 'page', function () {
          var text = makeText(values);
          return text === undefined ? undefined : indented(text);
        });
      });
    });
    ['group', 'groupCollapsed'].forEach(function (name) {
      forward(name, function (values) {
        print('log', 'page', function () {
          return group(values);
        });
      });
    });
    forward('groupEnd', function () {
      indent = indent.slice(2);
    });
  }

  function thrownText(value, message, place) {
    return isError(value) ? describe(value, message || toText(value), place) : message || plain(value);
  }

  var isWatching = false;

  function uncaught(value, message, place) {
    print('uncaught', 'page', function () {
      if (isError(value) || !place) return thrownText(value, message, place);
      return (typeof value === 'object' && value !== null ? plain(value) : message) + ' (' + place + ')';
    });
  }

  function forwardUncaught() {
    window.addEventListener('error', function (event) {
      // Only script errors have a message; an image that fails to load fires an event of the same name.
      if (!event.message) return;
      var place = event.filename ? placeOf(event.filename + ':' + event.lineno + ':' + event.colno) : '';
      uncaught(event.error, event.message, place);
    });
    window.addEventListener('unhandledrejection', function (event) {
      print('uncaught', 'page', function () {
        return 'Unhandled rejection: ' + thrownText(event.reason);
      });
    });
  }

  return {
    // Forwards the lines and the uncaught errors of this window's page.
    watch: function () {
      isWatching = true;
      forwardConsole();
      forwardUncaught();
    },
    // Reports an exception that reached the runtime.
    uncaught: uncaught,
    // Reports an exception that a script API caught, if a function of a watched page threw it.
    caught: function (error) {
      if (!isWatching) return;
      print('uncaught', 'page', function () {
        return framesOf(error).length > 0 ? thrownText(error) : undefined;
      });
    },
    // Writes a line of a script API.
    api: function (level, values) {
      print(level, 'api', function () {
        return format(values);
      });
    },
  };
});
