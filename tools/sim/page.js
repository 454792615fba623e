// Simulator only: builds a module's page from what the device answers for
// it: the page attaches the module (simrecord.cgi), then reads the record
// back through the device's own get program (zrcamctlget.cgi) and makes a
// field of every key it names, in its three parts:
// - settings are posted whole on every save, as the device's own pages post
//   their form (a checkbox key left out would be cleared); a text key only
//   when a person changed it, so bytes a browser would re-encode are kept;
// - commands and edits are posted only when a person changed them: posting
//   one asks the camera to act, or goes through a gate or slot.
// An indexed array's entries are the keys Name0, Name1, ...
(function () {
  var code = location.pathname.replace(/^.*\/(..)\.html$/, '$1');
  var form = document.getElementById('settings'), box = document.getElementById('fields');
  var legends = {
    settings: 'settings (saved as a whole)',
    commands: 'commands (posted only when changed: the camera acts on them)',
    edits: 'edits through a gate, a slot or the family\'s own rules (posted only when changed)'
  };
  function field(set, part, key, value) {
    var label = document.createElement('label'), input = document.createElement('input');
    input.type = 'text';
    input.name = key;
    input.value = input.defaultValue = String(value);
    input.dataset.always = part === 'settings' && typeof value === 'number' ? '1' : '';
    label.appendChild(document.createTextNode(key + ' '));
    label.appendChild(input);
    set.appendChild(label);
  }
  fetch('/cgi-bin/simrecord.cgi?' + code + '&attach').then(function () {
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
        value.forEach(function (v, i) { if (v !== null) field(set, part, key + i, v); });
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
