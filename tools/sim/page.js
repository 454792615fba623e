// Simulator only: builds a module's page from what the device answers for
// it: the page attaches the module (simrecord.cgi), then reads the record
// back through the device's own get program (zrcamctlget.cgi) and makes a
// field of every key it names, in its three parts:
// - settings are posted whole on every save, as the device's own pages post
//   their form; a text key only when a person changed it, so bytes a
//   browser would re-encode are kept;
// - commands and edits are posted only when a person changed them: posting
//   one asks the camera to act, or goes through a gate or slot; a checkbox
//   key (sim/checkboxes.txt) is a checkbox, posted while checked, as the
//   device reads it.
// An indexed array "Name<n>" is the keys Name0, Name1, ... (null: no key);
// a slot table's key has a field a slot, posted when changed, for the slot
// its set id selects.
(function () {
  var code = location.pathname.replace(/^.*\/(..)\.html$/, '$1');
  var form = document.getElementById('settings'), box = document.getElementById('fields');
  var legends = {
    settings: 'settings (saved as a whole)',
    commands: 'commands (posted only when changed: the camera acts on them)',
    edits: 'edits through a gate, a slot or the family\'s own rules (posted only when changed)'
  };
  var checkboxes = [];
  function field(set, part, key, value, slot) {
    var label = document.createElement('label'), input = document.createElement('input');
    input.name = key;
    if (checkboxes.some(function (re) { return re.test(key); })) {
      input.type = 'checkbox';
      input.value = '1';
      input.checked = value !== 0;
    } else {
      input.type = 'text';
      input.value = input.defaultValue = String(value);
    }
    input.dataset.always = part === 'settings' && typeof value === 'number' ? '1' : '';
    label.appendChild(document.createTextNode(key + (slot || '') + ' '));
    label.appendChild(input);
    set.appendChild(label);
  }
  fetch('/sim/checkboxes.txt').then(function (r) { return r.text(); }).then(function (names) {
    checkboxes = names.split('\n').filter(Boolean).map(function (n) {
      return new RegExp('^' + n.replace('<n>', '[0-9]+') + '$');
    });
    return fetch('/cgi-bin/simrecord.cgi?' + code + '&attach');
  }).then(function () {
    document.getElementById('record').src = '/cgi-bin/simrecord.cgi?' + code;
    return fetch('/cgi-bin/zrcamctlget.cgi');
  }).then(function (r) {
    return r.headers.get('Content-type') === 'application/json' ? r.json() : r.text();
  }).then(function (answer) {
    if (typeof answer === 'string') {  // the error page: its alert says why
      box.textContent = 'the device answers: ' + (answer.match(/\[(.*)\]/) || ['', answer])[1];
      return;
    }
    box.textContent = '';
    ['settings', 'commands', 'edits'].forEach(function (part) {
      var keys = Object.keys(answer[part]);
      if (!keys.length) return;
      var set = document.createElement('fieldset'), legend = document.createElement('legend');
      legend.textContent = legends[part];
      set.appendChild(legend);
      keys.forEach(function (key) {
        var value = answer[part][key];
        if (!Array.isArray(value)) return field(set, part, key, value);
        value.forEach(function (v, i) {  // an array's key each, or a slot table's key for slot i
          if (v !== null) field(set, part, key.replace('<n>', i), v, key.indexOf('<n>') < 0 ? ' (slot ' + i + ')' : '');
        });
      });
      box.appendChild(set);
    });
  });
  form.addEventListener('submit', function () {
    var inputs = box.querySelectorAll('input[type=text]');
    for (var i = 0; i < inputs.length; i++)
      inputs[i].disabled = !inputs[i].dataset.always && inputs[i].value === inputs[i].defaultValue;
    setTimeout(function () { document.getElementById('record').src += ''; }, 700);
  });
})();
