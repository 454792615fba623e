// Simulator only: builds a module page's form from its record as the
// inspector decodes it. Every key of the family is a field holding the
// value the record holds now; the keys a gate opens are grouped under their
// set id. On submit only the fields a person changed are posted (a key left
// out keeps its bytes), except checkboxes, which are posted while checked.
(function () {
  var code = location.pathname.replace(/^.*\/(..)\.html$/, '$1');
  var form = document.getElementById('settings'), box = document.getElementById('fields');
  function text(v) { return typeof v === 'string' ? v : String(v); }
  fetch('/cgi-bin/simrecord.cgi?' + code + '&json').then(function (r) { return r.json(); }).then(function (keys) {
    var groups = {}, order = [], seen = {};
    box.textContent = keys.length ? '' : 'no record to read the keys from';
    keys.forEach(function (k) {
      if (seen[k.key]) return;  // a slot table's key: one field, the slot its id selects
      seen[k.key] = true;
      var name = k.group || '';
      if (!groups[name]) { groups[name] = []; order.push(name); }
      groups[name].push(k);
    });
    order.forEach(function (name) {
      var set = document.createElement('fieldset'), legend = document.createElement('legend');
      legend.textContent = name ? 'edited while ' + name + ' opens the slot' : 'settings';
      set.appendChild(legend);
      groups[name].forEach(function (k) {
        var label = document.createElement('label'), input = document.createElement('input');
        input.name = k.key;
        input.title = k.type + ' at byte ' + k.offset;
        if (k.checkbox) {
          input.type = 'checkbox';
          input.checked = k.value !== 0;
          input.value = '1';
        } else {
          input.type = 'text';
          input.value = input.defaultValue = text(k.value);
        }
        label.appendChild(document.createTextNode(k.key + ' '));
        label.appendChild(input);
        set.appendChild(label);
      });
      box.appendChild(set);
    });
  });
  form.addEventListener('submit', function () {
    var inputs = box.querySelectorAll('input[type=text]');
    for (var i = 0; i < inputs.length; i++) inputs[i].disabled = inputs[i].value === inputs[i].defaultValue;
    setTimeout(function () { document.getElementById('record').src += ''; }, 700);
  });
})();
